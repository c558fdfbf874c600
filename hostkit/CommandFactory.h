#pragma once

#include <CommandProcessor/core/Catalogue.h>
#include <hostkit/CommandHandle.h>

#include <span>
#include <string_view>
#include <typeinfo>

namespace poker {

/// What a host needs to know of one command class beside its row in the catalogue. Lives as long as the process.
struct CommandClass {
  const CommandDescription* description;     ///< family, code, name, direction, handler
  PokerCommandI& (*create)();                ///< an object from the class's pool; null for a class that is not built
  void (*wipeSecrets)(PokerCommandI&);       ///< overwrites passwords, PINs and the like; null as `create`
  bool (*fitsOnWire)(const PokerCommandI&);  ///< whether a receiver can read back all that is held; null as `create`
  const std::type_info* type;                ///< null as `create`
  /// False for a class whose fields never travel (UpdateHardwareInfo): it is handed over inside the server, and a frame
  /// that names it would act with the fields of the object's last user.
  bool travels;

  std::string_view name() const { return description->name; }
  ProcessorFamily family() const { return description->family; }
  std::uint8_t code() const { return description->code; }
  CommandDirection direction() const { return description->direction; }
};

/// From the two bytes of a frame to the class that they name, in constant time. Any thread may call any of these.
///
/// The pair (6, 117) names two classes. To a receiver it is ClMiscIncreasePlayMoney, which players send; the other one,
/// ClMiscDumpManager, asks for the administrator's dump and is for use inside the process only. It is found by its name
/// and by an object of it, never by the pair, so that no client can ask for the dump.
class CommandFactory {
 public:
  CommandFactory() = delete;

  /// The class that a received pair names; null when there is none. The family may be any byte.
  static const CommandClass* find(ProcessorFamily family, std::uint8_t code) noexcept;
  /// The class of an object; null for one that is not in the catalogue, such as a host's own notice.
  static const CommandClass* find(const PokerCommandI& command) noexcept;
  /// By the exact name; null when there is none.
  static const CommandClass* find(std::string_view name) noexcept;
  /// All classes, in the order of the catalogue.
  static std::span<const CommandClass> classes() noexcept;

  /// An object for a received pair, as its last user left it: deserialize() must follow. Empty when the pair names no
  /// class that is built.
  /// @throws std::bad_alloc
  static CommandHandle<> create(ProcessorFamily family, std::uint8_t code);
};

}  // namespace poker

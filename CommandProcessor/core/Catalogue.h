#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/ProcessorFamily.h>
#include <CommandProcessor/platform/Export.h>

namespace poker {

namespace detail {
template <class Tag, ProcessorFamily kFamily, std::uint8_t kCode>
struct CommandInfoOf {
  using ProcessorType = Tag;
  static constexpr ProcessorFamily family = kFamily;
  static constexpr std::uint8_t code = kCode;
};
}  // namespace detail

/// What is settled about a command class, at compile time; incomplete for classes that are not in the catalogue.
///   ProcessorType  tag of the processor that handles it, see ProcessorTraits
///   family, code   the two bytes of its frame
///   name           the class's name
template <class T>
struct CommandInfo;

#define COMMAND(FAMILY, CODE, CLASS, PROCESSOR, HANDLER)                                              \
  template <>                                                                                         \
  struct CommandInfo<CLASS> : detail::CommandInfoOf<PROCESSOR##Type, ProcessorFamily::FAMILY, CODE> { \
    static constexpr const char* name = #CLASS;                                                       \
  };
#include <CommandProcessor/core/CommandList.inc>

/// Which side builds a command, and so which side handles it.
enum class CommandDirection : std::uint8_t { ServerToClient, ClientToServer };

/// "server to client" or "client to server".
constexpr std::string_view toText(CommandDirection direction) {
  return direction == CommandDirection::ClientToServer ? "client to server" : "server to client";
}

/// One row of the catalogue. The texts live as long as the process.
struct CommandDescription {
  ProcessorFamily family;      ///< what the class writes as its family byte
  std::uint8_t code;           ///< what the class writes as its type code byte
  std::string_view name;       ///< the class
  CommandDirection direction;  ///< follows from the family, but for Connection, which has commands of both
  std::string_view processor;  ///< class of the processor that handles it
  std::string_view handler;    ///< the processor's operation; empty for a command whose process() does nothing
};

/// Every command class, in the order family, code, class name. Any thread may call this and the look-ups below.
COMMANDPROCESSOR_API std::span<const CommandDescription> commandCatalogue();

/// The row of a class, by its exact name; null when there is none.
COMMANDPROCESSOR_API const CommandDescription* findCommand(std::string_view name);

/// The rows of a frame's pair: none when it names no class (to a receiver a protocol error), two for (6, 117), one for
/// every other pair. The family may be any byte, one without an enumerator too.
COMMANDPROCESSOR_API std::span<const CommandDescription> findCommands(ProcessorFamily family, std::uint8_t code);

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace poker {

/// Which maintenance is meant. Servers and clients agree on the values; this library only carries them.
enum class MaintainID : std::uint8_t {};

/// The server is, or is about to be, in maintenance. May answer ClHandShake or come at any time.
class COMMANDPROCESSOR_API SrvMaintenance final : public Command<SrvMaintenance> {
 public:
  /// @param message  what the player is told; sent up to its first NUL
  void init(std::string_view message, MaintainID id);

  const std::string& getMessage() const { return message_; }
  MaintainID getID() const { return id_; }

 private:
  friend FieldAccess;
  SrvMaintenance() = default;
  static void fields(auto& self, auto&& field);

  std::string message_;
  MaintainID id_{};
};

}  // namespace poker

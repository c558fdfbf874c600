#pragma once

#include <CommandProcessor/commands/ClMiscUserBased.h>
#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/CommonTypes.h>

#include <string>

namespace poker {

/// The server's own note that a user was seen on a machine, handed to the misc processor in memory. Its fields never
/// travel: what comes from the wire holds nothing.
class COMMANDPROCESSOR_API UpdateHardwareInfo final : public Command<UpdateHardwareInfo, ClMiscUserBased> {
 public:
  /// @param ip  the address that the user came from
  void init(int userID, const CommonTypes::HardwareInfo& info, const std::string& ip);

  const CommonTypes::HardwareInfo& info() const { return info_; }
  const std::string& ip() const { return ip_; }

 private:
  friend FieldAccess;
  UpdateHardwareInfo() = default;
  static void fields(auto& self, auto&& field);

  CommonTypes::HardwareInfo info_;
  std::string ip_;
};

}  // namespace poker

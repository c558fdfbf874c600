#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/CommonTypes.h>
#include <CommandProcessor/wire/RawDataHolder.h>

#include <string>

namespace poker {

/// The user chooses its screen name, asked for by SrvLogonError with the code ChooseScreenName, and logs on once more.
/// Answered by SrvLogonOk or SrvLogonError.
class COMMANDPROCESSOR_API ClMyNewScreenName final : public Command<ClMyNewScreenName> {
 public:
  /// Copies the bytes. A null text counts as "".
  /// @param frID      bytes of the client's own about the machine, none of them this object's own; null makes them
  ///                  none, whatever the size
  /// @param frIDSize  how many; below 1 means none
  void init(const char* screenName, const char* password, const CommonTypes::HardwareInfo& hdInfo, const char* pinCode,
            char* frID, int frIDSize);

  const std::string& screenName() const { return screenName_; }
  const std::string& password() const { return password_; }
  const std::string& pinCode() const { return pinCode_; }
  const RawDataHolder& frIDHolder() const { return frIDHolder_; }
  const CommonTypes::HardwareInfo& hdInfo() const { return hdInfo_; }

 private:
  friend FieldAccess;
  ClMyNewScreenName() = default;
  static void fields(auto& self, auto&& field);

  std::string screenName_;
  std::string password_;
  std::string pinCode_;
  RawDataHolder frIDHolder_;
  CommonTypes::HardwareInfo hdInfo_;
};

}  // namespace poker

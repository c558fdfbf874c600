#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/CommonTypes.h>

#include <string>

namespace poker {

/// The logon failed, in answer to ClLogon or ClMyNewScreenName; the client shows getGUIMessage(). With the code
/// ChooseScreenName it asks the user for a name and sends ClMyNewScreenName.
class COMMANDPROCESSOR_API SrvLogonError final : public Command<SrvLogonError> {
 public:
  /// @param newPin  with the code PinChanged, the PIN that counts from now on
  void init(CommonTypes::LogonRetCodes code, const std::string& newPin);

  CommonTypes::LogonRetCodes code() const { return code_; }
  const std::string& getNewPin() const { return newPin_; }
  /// What the user is told: lines with "\n" between them, or nothing. Holds the new PIN with the code PinChanged, so it
  /// is not for logs.
  std::string getGUIMessage() const;

 private:
  friend FieldAccess;
  SrvLogonError() = default;
  static void fields(auto& self, auto&& field);

  CommonTypes::LogonRetCodes code_ = CommonTypes::LogonOk;
  std::string newPin_;
};

}  // namespace poker

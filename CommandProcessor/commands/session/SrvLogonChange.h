#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyAcc.h>

namespace poker {

/// What SrvLogonOk told of the user's rights and account has changed. May come at any time after it.
class COMMANDPROCESSOR_API SrvLogonChange final : public Command<SrvLogonChange> {
 public:
  /// @param validEmail       the user has shown that the address is its own (ClValidateEmail)
  /// @param chatEnabled      the user may chat
  /// @param isSetupResponse  answers ClMiscSetupAccount
  void init(bool validEmail, bool chatEnabled, const RealMoneyAcc& realMoneyAccount, bool isSetupResponse);

  bool validEmail() const { return validEmail_; }
  bool chatEnabled() const { return chatEnabled_; }
  const RealMoneyAcc& realMoneyAccount() const { return realMoneyAccount_; }
  bool isSetupResponse() const { return isSetupResponse_; }

 private:
  friend FieldAccess;
  SrvLogonChange() = default;
  static void fields(auto& self, auto&& field);

  bool validEmail_ = false;
  bool chatEnabled_ = false;
  bool isSetupResponse_ = false;
  RealMoneyAcc realMoneyAccount_;
};

}  // namespace poker

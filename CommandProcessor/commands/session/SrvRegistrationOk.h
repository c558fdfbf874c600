#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/CommonTypes.h>

#include <string>

namespace poker {

/// The account is created, in answer to ClMakeNewAccount.
class COMMANDPROCESSOR_API SrvRegistrationOk final : public Command<SrvRegistrationOk> {
 public:
  /// @param userName  of the new account; null counts as ""
  void init(CommonTypes::NewAccountReg result, const char* userName);

  CommonTypes::NewAccountReg result() const { return result_; }
  std::string userName() const { return userName_; }

 private:
  friend FieldAccess;
  SrvRegistrationOk() = default;
  static void fields(auto& self, auto&& field);

  CommonTypes::NewAccountReg result_ = CommonTypes::AccountCreated;
  std::string userName_;
};

}  // namespace poker

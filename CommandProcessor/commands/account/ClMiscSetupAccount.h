#pragma once

#include <CommandProcessor/commands/ClMiscUserBased.h>
#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/types/UserAddress.h>

#include <string>
#include <string_view>

namespace poker {

/// A user sets its account up for real money: who it is, and how it will show that in a dispute. Answered by
/// SrvLogonChange.
class COMMANDPROCESSOR_API ClMiscSetupAccount final : public Command<ClMiscSetupAccount, ClMiscUserBased> {
 public:
  /// @param securityQuestion  of the user's own choice
  void init(std::string_view firstName, std::string_view lastName, const COleDateTime& birthDate,
            const UserAddress& address, std::string_view securityQuestion, std::string_view securityAnswer);

  const std::string& firstName() const { return firstName_; }
  const std::string& lastName() const { return lastName_; }
  const COleDateTime& birthDate() const { return birthDate_; }
  const UserAddress& address() const { return address_; }
  const std::string& securityQuestion() const { return securityQuestion_; }
  /// A secret, as it opens the account as a password does.
  const std::string& securityAnswer() const { return securityAnswer_; }

 private:
  friend FieldAccess;
  ClMiscSetupAccount() = default;
  static void fields(auto& self, auto&& field);

  std::string firstName_;
  std::string lastName_;
  COleDateTime birthDate_;
  UserAddress address_;
  std::string securityQuestion_;
  std::string securityAnswer_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>

#include <string>

namespace poker {

/// The user enters the code that came by e-mail, to show that the address is its own. Answered by SrvEmailValidated.
class COMMANDPROCESSOR_API ClValidateEmail final : public Command<ClValidateEmail> {
 public:
  /// A null text counts as "".
  void init(const char* userName, const char* emailCode);

  const std::string& userName() const { return userName_; }
  /// A secret, as whoever knows it passes for the owner of the address.
  const std::string& emailCode() const { return emailCode_; }

 private:
  friend FieldAccess;
  ClValidateEmail() = default;
  static void fields(auto& self, auto&& field);

  std::string userName_;
  std::string emailCode_;
};

}  // namespace poker

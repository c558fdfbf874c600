#pragma once

#include <CommandProcessor/commands/Command.h>

#include <string>

namespace poker {

/// The user gives the password of a protected table, in answer to SrvRequestPass. A wrong one is met with
/// SrvPasswordError.
class COMMANDPROCESSOR_API ClSendUserPass final : public Command<ClSendUserPass> {
 public:
  /// @param password  null counts as ""
  void init(const char* password);

  const std::string& getPassword() const { return password_; }

 private:
  friend FieldAccess;
  ClSendUserPass() = default;
  static void fields(auto& self, auto&& field);

  std::string password_;
};

}  // namespace poker

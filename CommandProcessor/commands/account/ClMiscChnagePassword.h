#pragma once

#include <CommandProcessor/commands/ClMiscUserBased.h>
#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/core/GenericCommands.h>

#include <string>

namespace poker {

/// A user changes its password. The old one shows that the user itself sits at the client. Both are secrets.
class COMMANDPROCESSOR_API ClMiscChnagePassword final
    : public Command<ClMiscChnagePassword, StringCommand<ClMiscUserBased, MiscCommandType>> {
 public:
  /// A null text counts as "".
  void init(const char* oldPassword, const char* newPassword);

  const std::string& oldPassword() const { return oldPassword_; }
  const std::string& newPassword() const { return text(); }

 private:
  friend FieldAccess;
  ClMiscChnagePassword() = default;
  static void fields(auto& self, auto&& field);

  std::string oldPassword_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/MemberProfileInfo.h>

namespace poker {

/// A user changes its own profile. The server knows the user by the connection, whatever the profile says.
class COMMANDPROCESSOR_API ClUpdatePlayerProfile final : public Command<ClUpdatePlayerProfile> {
 public:
  void init(const MemberProfileInfo& info);

  const MemberProfileInfo& info() const { return info_; }

 private:
  friend FieldAccess;
  ClUpdatePlayerProfile() = default;
  static void fields(auto& self, auto&& field);

  MemberProfileInfo info_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/MemberProfileInfo.h>

namespace poker {

/// A player's profile, in answer to ClGetPlayerProfile.
class COMMANDPROCESSOR_API SrvPlayerProfile final : public Command<SrvPlayerProfile> {
 public:
  /// No profile: the player is not known, or shows none.
  void init();
  /// The profile, which makes the answer valid.
  void info(const MemberProfileInfo& info);

  const MemberProfileInfo& info() const { return info_; }
  bool valid() const { return valid_; }

 private:
  friend FieldAccess;
  SrvPlayerProfile() = default;
  static void fields(auto& self, auto&& field);

  bool valid_ = false;
  MemberProfileInfo info_;
};

}  // namespace poker

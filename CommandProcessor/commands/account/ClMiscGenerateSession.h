#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/account/SessionTarget.h>

namespace poker {

/// A user asks for a session outside the table server. Answered by SrvSessionCreated.
class COMMANDPROCESSOR_API ClMiscGenerateSession final : public Command<ClMiscGenerateSession> {
 public:
  void init(SessionTarget target);

  SessionTarget target() const { return target_; }

 private:
  friend FieldAccess;
  ClMiscGenerateSession() = default;
  static void fields(auto& self, auto&& field);

  SessionTarget target_ = SessionTarget::Cashier;
};

}  // namespace poker

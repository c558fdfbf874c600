#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/account/SessionTarget.h>
#include <CommandProcessor/platform/COleDateTime.h>

#include <string>
#include <string_view>

namespace poker {

/// A session outside the table server, in answer to ClMiscGenerateSession.
class COMMANDPROCESSOR_API SrvSessionCreated final : public Command<SrvSessionCreated> {
 public:
  /// @param sessionID  what the target knows the user by
  /// @param url        the page to open, without the session's id
  /// @param expires    until when the session can be used, in UTC
  void init(SessionTarget target, std::string_view sessionID, std::string_view url, const COleDateTime& expires);

  SessionTarget target() const { return target_; }
  /// A secret, as whoever knows it passes for the user.
  const std::string& sessionID() const { return sessionID_; }
  const std::string& url() const { return url_; }
  const COleDateTime& expires() const { return expires_; }

 private:
  friend FieldAccess;
  SrvSessionCreated() = default;
  static void fields(auto& self, auto&& field);

  SessionTarget target_ = SessionTarget::Cashier;
  std::string sessionID_;
  std::string url_;
  COleDateTime expires_;
};

}  // namespace poker

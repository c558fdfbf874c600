#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyAcc.h>
#include <CommandProcessor/types/TypeWrapper.h>

#include <string>

namespace poker {

/// The user is logged on, in answer to ClLogon or ClMyNewScreenName. Marks the buffer that it is written into as one
/// that holds private data.
class COMMANDPROCESSOR_API SrvLogonOk final : public Command<SrvLogonOk> {
 public:
  /// Leaves the user without a previous seat; prevSeatID(seat) sets one afterwards.
  /// @param screenName   the name that other players see
  /// @param email        null counts as ""
  /// @param validEmail   the user has shown that the address is its own (ClValidateEmail)
  /// @param chatEnabled  the user may chat
  void init(const std::string& screenName, const char* email, bool validEmail, const RealMoneyAcc& realMoneyAccount,
            bool chatEnabled);
  /// @param seat  where the user sat when its last connection was lost
  void prevSeatID(SeatID seat) { prevSeatID_ = seat; }

  const std::string& getScreenName() const { return screenName_; }
  const SeatID& prevSeatID() const { return prevSeatID_; }
  bool validEmail() const { return validEmail_; }
  const std::string& email() const { return email_; }
  const RealMoneyAcc& realMoneyAccount() const { return realMoneyAccount_; }
  bool chatEnabled() const { return chatEnabled_; }

 private:
  friend FieldAccess;
  SrvLogonOk() = default;
  static void fields(auto& self, auto&& field);
  void aboutToSerialize(SerializeCommandBuf& buf) const;

  std::string screenName_;
  SeatID prevSeatID_;
  bool validEmail_ = false;
  std::string email_;
  RealMoneyAcc realMoneyAccount_;
  bool chatEnabled_ = false;
};

}  // namespace poker

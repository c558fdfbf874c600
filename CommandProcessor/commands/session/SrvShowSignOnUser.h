#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TypeWrapper.h>

#include <cstdint>

namespace poker {

/// Which sign is meant. Other values are carried as they are.
enum class SignOnUser : std::uint8_t {
  SignedOn = 0,      ///< on: the player signed on at the table; off: it signed off
  Disconnected = 1,  ///< the player's connection is lost
  SittingOut = 2,    ///< the player keeps the seat and takes no part in hands
};

/// A sign beside a player at the table is switched on or off.
class COMMANDPROCESSOR_API SrvShowSignOnUser final : public Command<SrvShowSignOnUser> {
 public:
  void init(const SeatID& seatID, SignOnUser sign, bool onOff);

  const SeatID& seatID() const { return seatID_; }
  SignOnUser sign() const { return sign_; }
  bool onOff() const { return onOff_; }

 private:
  friend FieldAccess;
  SrvShowSignOnUser() = default;
  static void fields(auto& self, auto&& field);

  SeatID seatID_;
  SignOnUser sign_ = SignOnUser::SignedOn;
  bool onOff_ = false;
};

}  // namespace poker

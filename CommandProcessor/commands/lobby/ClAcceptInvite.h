#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <cstdint>
#include <string>

namespace poker {

/// A player takes the seat that SrvWaitList held for it.
class COMMANDPROCESSOR_API ClAcceptInvite final : public Command<ClAcceptInvite> {
 public:
  /// @param reserveID  as SrvWaitList named the reservation
  /// @param money      what the player brings to the table
  void init(unsigned gameID, const std::string& reserveID, const RealMoneyType& money);

  unsigned gameID() const { return gameID_; }
  const std::string& reserveID() const { return reserveID_; }
  const RealMoneyType& money() const { return money_; }

 private:
  friend FieldAccess;
  ClAcceptInvite() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t gameID_ = 0;
  std::string reserveID_;
  RealMoneyType money_;
};

}  // namespace poker

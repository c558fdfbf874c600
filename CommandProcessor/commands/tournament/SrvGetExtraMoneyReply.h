#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ExtraMoneyRequest.h>

#include <cstdint>
#include <string>

namespace poker {

/// Whether a re-buy or add-on was made, in answer to ClGetExtraMoney.
class COMMANDPROCESSOR_API SrvGetExtraMoneyReply final : public Command<SrvGetExtraMoneyReply> {
 public:
  using RequestType = ExtraMoneyRequest;

  /// One byte; other values are carried as they are.
  enum class Reason : std::uint8_t {
    None = 0,  ///< not made, as with Failed
    Done = 1,
    Failed = 2,
    TooLate = 3,
    NoRebuysLeft = 4,
    NotEnoughMoney = 5,
    BalanceTooHigh = 6,  ///< still has the starting amount
    NotStarted = 7,      ///< the tournament
    PrizeAwarded = 8,    ///< some player has a prize already
  };

  /// @param rebuys          how many the player has left
  /// @param rebuyInAdvance  see rebuyInAdvance() and showAddonBtn()
  void init(RequestType type, Reason reason, std::uint32_t rebuys, bool rebuyInAdvance);

  std::uint32_t getRebuys() const { return rebuys_; }
  Reason getReason() const { return reason_; }
  RequestType getType() const { return type_; }

  // One flag with two readings, by the type of the request.
  /// The re-buy is made before the chips are gone: they come with the next hand.
  bool rebuyInAdvance() const { return rebuyInAdvance_; }
  /// The client offers the add-on.
  bool showAddonBtn() const { return rebuyInAdvance_; }

  /// What the player is told; may begin with "\n". Empty for reasons without a text.
  /// @param hideRebuysLeft  say nothing of the re-buys that are left
  std::string reasonToString(bool hideRebuysLeft) const;

 private:
  friend FieldAccess;
  SrvGetExtraMoneyReply() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t rebuys_ = 0;
  Reason reason_ = Reason::None;
  RequestType type_ = RequestType::Rebuy;
  bool rebuyInAdvance_ = false;
};

}  // namespace poker

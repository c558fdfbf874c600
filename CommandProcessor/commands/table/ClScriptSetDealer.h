#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TypeWrapper.h>

#include <cstdint>
#include <string>

namespace poker {

/// For test servers alone: fixes the dealer and the cards of the next hand. A server that plays for anything must
/// refuse it.
class COMMANDPROCESSOR_API ClScriptSetDealer final : public Command<ClScriptSetDealer> {
 public:
  /// @param minimumPlayers  the hand starts with no fewer
  /// @param cards           the deck from its top, in the server's own notation
  void init(SeatID seat, unsigned minimumPlayers, const std::string& cards);

  SeatID getSeatID() const { return seatID_; }
  unsigned getMinimumPlayers() const { return minimumPlayers_; }
  const std::string& getCards() const { return cards_; }

 private:
  friend FieldAccess;
  ClScriptSetDealer() = default;
  static void fields(auto& self, auto&& field);

  SeatID seatID_;
  std::uint32_t minimumPlayers_ = 0;
  std::string cards_;
};

}  // namespace poker

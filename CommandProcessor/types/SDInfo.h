#pragma once

#include <CommandProcessor/types/CardVector.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/SteadyVector.h>
#include <CommandProcessor/types/TypeWrapper.h>

#include <utility>

namespace poker {

/// One of the final players of a hand: the cards, and what they won.
class COMMANDPROCESSOR_API SDInfo : public Record<SDInfo> {
 public:
  /// Travels as one byte; other values are carried as they are.
  enum WinnerType : std::uint8_t {
    NotWinner = 0,
    Winner = 1,     ///< of the pot; in games with a low hand, of the high half
    LowWinner = 2,  ///< of the low half
    Scoop = 3,      ///< of both halves
    Uncalled = 4,   ///< of what nobody called; no hand was compared
  };

  SDInfo() = default;
  SDInfo(CardVector cards, const SeatID& seat, const RealMoneyType& money, WinnerType winnerType)
      : seatID_(seat), money_(money), cards_(std::move(cards)), winnerType_(winnerType) {}

  const SeatID& getSeatID() const { return seatID_; }
  /// What the player won.
  const RealMoneyType& getMoney() const { return money_; }
  const CardVector& cards() const { return cards_; }
  WinnerType winnerType() const { return winnerType_; }

  /// Assigns all members and keeps the memory of the cards.
  void set(const CardVector& cards, const SeatID& seat, const RealMoneyType& money, WinnerType winnerType);

  friend bool operator==(const SDInfo& a, const SDInfo& b) {
    return a.seatID_ == b.seatID_ && a.money_ == b.money_ && a.cards_ == b.cards_ && a.winnerType_ == b.winnerType_;
  }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("seatID", self.seatID_);
    field("money", self.money_);
    field("cards", self.cards_);
    field("winnerType", self.winnerType_);
  }

  SeatID seatID_;
  RealMoneyType money_;
  CardVector cards_;
  WinnerType winnerType_ = NotWinner;
};

/// The final players of a hand, in the order in which they show.
///
///     count (32 bits), then for each: seat (byte), money, CardVector, winner type (byte)
class COMMANDPROCESSOR_API SDInfoVector : public SteadyVector<SDInfo>, public Record<SDInfoVector> {
 public:
  using SteadyVector::SteadyVector;

  /// What stands for the players in other field lists.
  static auto asList(auto& self) { return wire::list<std::uint32_t>(self); }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("players", asList(self)); }
};

}  // namespace poker

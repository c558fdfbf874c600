#pragma once

#include <CommandProcessor/types/CardVector.h>
#include <CommandProcessor/types/SteadyVector.h>
#include <CommandProcessor/types/TypeWrapper.h>

#include <utility>

namespace poker {

/// The cards of one seat, as the recipient may see them.
class COMMANDPROCESSOR_API UserCardPack : public Record<UserCardPack> {
 public:
  /// No seat and no cards.
  UserCardPack() = default;
  UserCardPack(const SeatID& seat, CardVector cards) : seatID_(seat), cards_(std::move(cards)) {}

  const SeatID& getSeatID() const { return seatID_; }
  void setSeatID(const SeatID& seat) { seatID_ = seat; }
  const CardVector& cards() const { return cards_; }
  CardVector& cards() { return cards_; }

  friend bool operator==(const UserCardPack& a, const UserCardPack& b) {
    return a.seatID_ == b.seatID_ && a.cards_ == b.cards_;
  }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("seatID", self.seatID_);
    field("cards", self.cards_);
  }

  SeatID seatID_;
  CardVector cards_;
};

/// The cards of several seats in one deal, in dealing order.
///
///     count (32 bits), then for each seat: seat (byte), its CardVector
class COMMANDPROCESSOR_API UserCardsInfoVector : public SteadyVector<UserCardPack>, public Record<UserCardsInfoVector> {
 public:
  using SteadyVector::SteadyVector;

  /// What stands for the packs in other field lists.
  static auto asList(auto& self) { return wire::list<std::uint32_t>(self); }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("packs", asList(self)); }
};

}  // namespace poker

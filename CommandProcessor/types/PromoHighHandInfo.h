#pragma once

#include <CommandProcessor/types/CardVector.h>
#include <CommandProcessor/types/SteadyVector.h>
#include <CommandProcessor/wire/Record.h>

#include <cstdint>
#include <string>

namespace poker {

/// A hand that counts in a high-hand promotion.
struct COMMANDPROCESSOR_API PromoHighHand {
  std::uint32_t dealID = 0;  ///< the deal in which it was held
  std::string userName;
  CardVector cards;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("dealID", self.dealID);
    field("userName", self.userName);
    field("cards", self.cards);
  }
};

/// A promotion that rewards the highest hands.
///
///     promoID (32 bits), title (string), handsLeft (32 bits), cardsToBeat (CardVector), count (16 bits), then each
///     PromoHighHand
struct COMMANDPROCESSOR_API PromoHighHandInfo : Record<PromoHighHandInfo> {
  std::uint32_t promoID = 0;
  std::string title;
  std::uint32_t handsLeft = 0;        ///< hands of the house that are still to be played; 0 when it is finished
  CardVector cardsToBeat;             ///< the hand that a new one must beat; empty when any hand counts
  SteadyVector<PromoHighHand> hands;  ///< the highest first; at most 65,535 can travel

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("promoID", self.promoID);
    field("title", self.title);
    field("handsLeft", self.handsLeft);
    field("cardsToBeat", self.cardsToBeat);
    field("hands", wire::list<std::uint16_t>(self.hands));
  }
};

}  // namespace poker

#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/SteadyVector.h>
#include <CommandProcessor/wire/Record.h>

#include <string>

namespace poker {

/// Bonus money that a player was given and earns by playing.
struct COMMANDPROCESSOR_API PromoBonus {
  RealMoneyType amount;  ///< what was given
  std::string promotion;
  bool released = false;  ///< earned in full: the money is the player's own
  RealMoneyType toEarn;   ///< how much of it is still to be earned

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("amount", self.amount);
    field("promotion", self.promotion);
    field("released", self.released);
    field("toEarn", self.toEarn);
  }
};

/// A player's bonus money, with a text to show above it.
///
///     text (string), count (32 bits, signed), then each PromoBonus; nothing follows a count below 1
struct COMMANDPROCESSOR_API PromoBucksInfo : Record<PromoBucksInfo> {
  std::string text;
  SteadyVector<PromoBonus> bonuses;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("text", self.text);
    field("bonuses", wire::list<wire::BelowOneIsNone>(self.bonuses));
  }
};

}  // namespace poker

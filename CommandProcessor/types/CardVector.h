#pragma once

#include <CommandProcessor/types/Card.h>
#include <CommandProcessor/wire/Record.h>

#include <vector>

namespace poker {

/// Cards in dealing order, as one recipient may see them.
///
///     count (32 bits), then each card as a byte
class COMMANDPROCESSOR_API CardVector : public std::vector<Card>, public Record<CardVector> {
 public:
  using std::vector<Card>::vector;

  /// Gives every card the same visibility.
  void setVisibility(Card::Visibility visibility) {
    for (Card& card : *this) card.setVisibility(visibility);
  }

  /// What stands for the cards in other field lists.
  static auto asList(auto& self) { return wire::list<std::uint32_t>(self); }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("cards", asList(self)); }
};

}  // namespace poker

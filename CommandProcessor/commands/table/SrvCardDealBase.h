#pragma once

#include <CommandProcessor/commands/table/SrvTableStateUpdate.h>
#include <CommandProcessor/types/UserCardsInfoVector.h>

namespace poker {

/// What the two commands that deal cards share: all but their code and handler.
class COMMANDPROCESSOR_API SrvCardDealBase : public BaseCommand<SrvCardDealBase, SrvTableStateUpdate> {
 public:
  /// The cards by seat, in dealing order, as this recipient may see them.
  const UserCardsInfoVector& getHands() const { return hands_; }

 protected:
  friend FieldAccess;
  explicit SrvCardDealBase(CommandType type) : BaseCommand(type) {}
  static void fields(auto& self, auto&& field) {
    SrvTableStateUpdate::fields(self, field);
    field("hands", self.hands_);
  }
  /// Writes one entry: the seat, then its cards.
  static void serializeCards(SerializeCommandBuf& buf, const UserCardPack& pack) { pack.serialize(buf); }
  void initHands(const UserCardsInfoVector& hands) {
    initUpdate(SeatID(), false);
    hands_ = hands;
  }

  UserCardsInfoVector hands_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvCardDealBase.h>

namespace poker {

/// Cards are dealt to the board.
class COMMANDPROCESSOR_API SrvPotCardDeal final : public Command<SrvPotCardDeal, SrvCardDealBase> {
 public:
  void init(const UserCardsInfoVector& hands);

 private:
  friend FieldAccess;
  SrvPotCardDeal() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker

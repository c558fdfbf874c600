#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvCardDealBase.h>

namespace poker {

/// Cards are dealt to the players. Each recipient gets a command of its own, with its own cards to see.
class COMMANDPROCESSOR_API SrvCardDeal final : public Command<SrvCardDeal, SrvCardDealBase> {
 public:
  void init(const UserCardsInfoVector& hands);

 private:
  friend FieldAccess;
  SrvCardDeal() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvPotCardDeal.h>

namespace poker {

void SrvPotCardDeal::init(const UserCardsInfoVector& hands) { initHands(hands); }

void SrvPotCardDeal::fields(auto& self, auto&& field) { SrvCardDealBase::fields(self, field); }

template class Command<SrvPotCardDeal, SrvCardDealBase>;
template class CachedCmdCreator<SrvPotCardDeal>;

}  // namespace poker

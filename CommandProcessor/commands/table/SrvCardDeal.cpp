#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvCardDeal.h>

namespace poker {

void SrvCardDeal::init(const UserCardsInfoVector& hands) { initHands(hands); }

void SrvCardDeal::fields(auto& self, auto&& field) { SrvCardDealBase::fields(self, field); }

template class Command<SrvCardDeal, SrvCardDealBase>;
template class CachedCmdCreator<SrvCardDeal>;

}  // namespace poker

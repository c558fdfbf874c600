#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvCreditCardInfo.h>

namespace poker {

void SrvCreditCardInfo::init() {
  clearConnections();
  cards_.clear();
}

void SrvCreditCardInfo::add(const CreditCardInfo& card) { cards_.push_back(card); }

void SrvCreditCardInfo::fields(auto& self, auto&& field) { field("cards", list<std::uint32_t>(self.cards_)); }

template class Command<SrvCreditCardInfo>;
template class CachedCmdCreator<SrvCreditCardInfo>;

}  // namespace poker

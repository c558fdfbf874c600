#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvPromoInfo.h>

namespace poker {

void SrvPromoInfo::init(const PromoBucksInfo& promoInfo) {
  clearConnections();
  promoInfo_ = promoInfo;
}

void SrvPromoInfo::fields(auto& self, auto&& field) { field("promoInfo", self.promoInfo_); }

template class Command<SrvPromoInfo>;
template class CachedCmdCreator<SrvPromoInfo>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvHighHandInfo.h>

namespace poker {

void SrvHighHandInfo::init(const std::vector<PromoHighHandInfo>& promotions) {
  clearConnections();
  promotions_.clear();
  for (const PromoHighHandInfo& promotion : promotions) promotions_.push_back(promotion);
}

void SrvHighHandInfo::fields(auto& self, auto&& field) { field("promotions", list<std::uint16_t>(self.promotions_)); }

template class Command<SrvHighHandInfo>;
template class CachedCmdCreator<SrvHighHandInfo>;

}  // namespace poker

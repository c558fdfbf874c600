#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvUserWonPromotion.h>

namespace poker {

void SrvUserWonPromotion::init(const std::string& userName, const std::uint32_t& dealID, const std::string& handText) {
  clearConnections();
  userName_ = userName;
  dealID_ = dealID;
  handText_ = handText;
}

void SrvUserWonPromotion::fields(auto& self, auto&& field) {
  field("userName", self.userName_);
  field("dealID", self.dealID_);
  field("handText", self.handText_);
}

template class Command<SrvUserWonPromotion>;
template class CachedCmdCreator<SrvUserWonPromotion>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvSendUserPic.h>

namespace poker {

void SrvSendUserPic::init(const std::string& userName, const char* picture, unsigned size, const std::string& picCode) {
  clearConnections();
  picture_.assign(picture, picture + (picture != nullptr ? size : 0));
  picCode_ = picCode;
  userName_ = userName;
}

void SrvSendUserPic::fields(auto& self, auto&& field) {
  field("picture", bytes<std::uint32_t>(self.picture_));
  field("picCode", self.picCode_);
  field("userName", self.userName_);
}

template class Command<SrvSendUserPic>;
template class CachedCmdCreator<SrvSendUserPic>;

}  // namespace poker

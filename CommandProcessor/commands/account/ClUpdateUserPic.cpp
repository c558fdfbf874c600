#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClUpdateUserPic.h>

namespace poker {

void ClUpdateUserPic::init(const char* picture, unsigned short size) {
  clearConnections();
  picture_.assign(picture, picture + (picture != nullptr ? size : 0));
}

void ClUpdateUserPic::fields(auto& self, auto&& field) {
  // The size is half as wide as the one in SrvSendUserPic.
  field("picture", bytes<std::uint16_t>(self.picture_));
}

template class Command<ClUpdateUserPic>;
template class CachedCmdCreator<ClUpdateUserPic>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscAnnounceTour.h>

namespace poker {

void ClMiscAnnounceTour::init(std::uint32_t tourID, std::string_view announcement) {
  clearConnections();
  tourID_ = tourID;
  announcement_ = announcement;
}

void ClMiscAnnounceTour::fields(auto& self, auto&& field) {
  field("tourID", self.tourID_);
  field("announcement", self.announcement_);
}

template class Command<ClMiscAnnounceTour>;
template class CachedCmdCreator<ClMiscAnnounceTour>;

}  // namespace poker

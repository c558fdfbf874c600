#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvUpdateText.h>

namespace poker {

void SrvUpdateText::init(const MultiTourTextInfo& text, std::uint32_t tourID) {
  clearConnections();
  text_ = text;
  tourID_ = tourID;
}

void SrvUpdateText::fields(auto& self, auto&& field) {
  field("text", self.text_);
  field("tourID", self.tourID_);
}

template class Command<SrvUpdateText>;
template class CachedCmdCreator<SrvUpdateText>;

}  // namespace poker

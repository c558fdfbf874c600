#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourPlayerFinished.h>

namespace poker {

void SrvTourPlayerFinished::init(const std::string& text) {
  clearConnections();
  text_ = text;
}

void SrvTourPlayerFinished::fields(auto& self, auto&& field) { field("text", self.text_); }

template class Command<SrvTourPlayerFinished>;
template class CachedCmdCreator<SrvTourPlayerFinished>;

}  // namespace poker

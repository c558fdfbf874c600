#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClGetHighHand.h>

namespace poker {

void ClGetHighHand::init(bool showFinished) {
  clearConnections();
  showFinished_ = showFinished;
}

void ClGetHighHand::fields(auto& self, auto&& field) { field("showFinished", self.showFinished_); }

template class Command<ClGetHighHand>;
template class CachedCmdCreator<ClGetHighHand>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscGenerateSession.h>

namespace poker {

void ClMiscGenerateSession::init(SessionTarget target) {
  clearConnections();
  target_ = target;
}

void ClMiscGenerateSession::fields(auto& self, auto&& field) { field("target", self.target_); }

template class Command<ClMiscGenerateSession>;
template class CachedCmdCreator<ClMiscGenerateSession>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvSessionCreated.h>

namespace poker {

void SrvSessionCreated::init(SessionTarget target, std::string_view sessionID, std::string_view url,
                             const COleDateTime& expires) {
  clearConnections();
  target_ = target;
  sessionID_ = sessionID;
  url_ = url;
  expires_ = expires;
}

void SrvSessionCreated::fields(auto& self, auto&& field) {
  field("target", self.target_);
  field("sessionID", secret(self.sessionID_));
  field("url", self.url_);
  field("expires", self.expires_);
}

template class Command<SrvSessionCreated>;
template class CachedCmdCreator<SrvSessionCreated>;

}  // namespace poker

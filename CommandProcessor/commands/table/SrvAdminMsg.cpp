#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/OrEmpty.h>
#include <CommandProcessor/commands/table/SrvAdminMsg.h>

namespace poker {

void SrvAdminMsg::init(const char* title, const char* message, unsigned char postAction) {
  clearConnections();
  title_ = orEmpty(title);
  message_ = orEmpty(message);
  postAction_ = postAction;
}

void SrvAdminMsg::fields(auto& self, auto&& field) {
  field("title", self.title_);
  field("message", self.message_);
  field("postAction", self.postAction_);
}

template class Command<SrvAdminMsg>;
template class CachedCmdCreator<SrvAdminMsg>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClChatMsg.h>
#include <CommandProcessor/commands/table/OrEmpty.h>

namespace poker {

void ClChatMsg::init(const char* message, ChatMsgTypes::ChatStyle style) {
  clearConnections();
  message_ = orEmpty(message);
  style_ = style;
}

void ClChatMsg::fields(auto& self, auto&& field) {
  field("message", self.message_);
  field("style", self.style_);
}

template class Command<ClChatMsg>;
template class CachedCmdCreator<ClChatMsg>;

}  // namespace poker

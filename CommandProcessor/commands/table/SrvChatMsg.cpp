#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/OrEmpty.h>
#include <CommandProcessor/commands/table/SrvChatMsg.h>

namespace poker {

void SrvChatMsg::init(const char* message, const char* sender, ChatMsgTypes::ChatType type,
                      ChatMsgTypes::ChatStyle style) {
  clearConnections();
  message_ = orEmpty(message);
  sender_ = orEmpty(sender);
  type_ = type;
  style_ = style;
}

void SrvChatMsg::fields(auto& self, auto&& field) {
  field("sender", self.sender_);
  field("message", self.message_);
  field("type", self.type_);
  field("style", self.style_);
}

template class Command<SrvChatMsg>;
template class CachedCmdCreator<SrvChatMsg>;

}  // namespace poker

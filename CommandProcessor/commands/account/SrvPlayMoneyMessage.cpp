#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvPlayMoneyMessage.h>

namespace poker {

void SrvPlayMoneyMessage::init(std::string_view message, const RealMoneyType& increase,
                               const RealMoneyType& playMoney) {
  clearConnections();
  message_ = message;
  increase_ = increase;
  playMoney_ = playMoney;
}

void SrvPlayMoneyMessage::aboutToSerialize(SerializeCommandBuf& buf) const { buf.setMark(); }

void SrvPlayMoneyMessage::fields(auto& self, auto&& field) {
  field("message", self.message_);
  field("increase", self.increase_);
  field("playMoney", self.playMoney_);
}

template class Command<SrvPlayMoneyMessage>;
template class CachedCmdCreator<SrvPlayMoneyMessage>;

}  // namespace poker

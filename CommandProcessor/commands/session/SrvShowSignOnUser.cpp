#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvShowSignOnUser.h>

namespace poker {

void SrvShowSignOnUser::init(const SeatID& seatID, SignOnUser sign, bool onOff) {
  clearConnections();
  seatID_ = seatID;
  sign_ = sign;
  onOff_ = onOff;
}

void SrvShowSignOnUser::fields(auto& self, auto&& field) {
  // The bool first, unlike in init().
  field("onOff", self.onOff_);
  field("seatID", self.seatID_);
  field("sign", self.sign_);
}

template class Command<SrvShowSignOnUser>;
template class CachedCmdCreator<SrvShowSignOnUser>;

}  // namespace poker

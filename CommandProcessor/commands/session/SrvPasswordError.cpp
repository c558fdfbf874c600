#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvPasswordError.h>

namespace poker {

void SrvPasswordError::init(ReasonID reason, bool shouldClose) {
  clearConnections();
  reason_ = reason;
  shouldClose_ = shouldClose;
}

const char* SrvPasswordError::reasonToStr() const {
  return reason_ == NotAuthorized ? "Sorry, your authorization password for this table is wrong." : "Wrong password !";
}

void SrvPasswordError::fields(auto& self, auto&& field) {
  field("reasonID", self.reason_);
  field("shouldClose", self.shouldClose_);
}

template class Command<SrvPasswordError>;
template class CachedCmdCreator<SrvPasswordError>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvStartAnimation.h>

namespace poker {

void SrvStartAnimation::init(AnimationType type) {
  clearConnections();
  type_ = type;
}

void SrvStartAnimation::fields(auto& self, auto&& field) { field("type", self.type_); }

template class Command<SrvStartAnimation>;
template class CachedCmdCreator<SrvStartAnimation>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/OrEmpty.h>
#include <CommandProcessor/commands/table/SrvUpdateHintText.h>

namespace poker {

void SrvUpdateHintText::init(unsigned id, const char* hint) {
  clearConnections();
  id_ = id;
  hint_ = orEmpty(hint);
}

void SrvUpdateHintText::fields(auto& self, auto&& field) {
  field("id", as<std::uint8_t>(self.id_));
  field("hint", self.hint_);
}

template class Command<SrvUpdateHintText>;
template class CachedCmdCreator<SrvUpdateHintText>;

}  // namespace poker

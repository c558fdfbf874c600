#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClBotAppEnter.h>
#include <CommandProcessor/commands/table/OrEmpty.h>

namespace poker {

void ClBotAppEnter::init(const char* str) {
  clearConnections();
  str_ = orEmpty(str);
}

void ClBotAppEnter::fields(auto& self, auto&& field) { field("str", self.str_); }

template class Command<ClBotAppEnter>;
template class CachedCmdCreator<ClBotAppEnter>;

}  // namespace poker

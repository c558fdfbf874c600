#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvNews.h>

namespace poker {

void SrvNews::init() {
  clearConnections();
  news_.clear();
}

void SrvNews::addMsg(int number, const char* text) { news_.set(number, text != nullptr ? text : ""); }

const char* SrvNews::news(int number) const {
  const auto found = news_.find(number);
  return found != news_.end() ? found->second.c_str() : nullptr;
}

void SrvNews::fields(auto& self, auto&& field) { field("news", map<std::uint16_t>(self.news_)); }

template class Command<SrvNews>;
template class CachedCmdCreator<SrvNews>;

}  // namespace poker

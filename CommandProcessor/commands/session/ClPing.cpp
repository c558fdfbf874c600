#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClPing.h>

namespace poker {

void ClPing::init() { init(0, 0); }

void ClPing::init(std::uint8_t first, std::uint32_t second) {
  clearConnections();
  info_ = PingInfo(first, static_cast<std::uint8_t>(second));
}

void ClPing::fields(auto& self, auto&& field) { field("info", self.info_); }

template class Command<ClPing>;
template class CachedCmdCreator<ClPing>;

}  // namespace poker

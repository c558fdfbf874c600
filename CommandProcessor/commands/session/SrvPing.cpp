#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvPing.h>

#include <ctime>

namespace poker {

void SrvPing::init(std::int32_t startTime) {
  clearConnections();
  startTime_ = startTime;
  inServer_ = 0;
}

void SrvPing::aboutToSerialize(SerializeCommandBuf&) const {
  // Unsigned, so that the difference wraps and stays right modulo 256 when the clock outgrows 32 bits.
  const auto now = static_cast<std::uint32_t>(std::time(nullptr));
  inServer_ = static_cast<std::uint8_t>(now - static_cast<std::uint32_t>(startTime_));
}

void SrvPing::fields(auto& self, auto&& field) {
  field.local(self.startTime_);
  field("inServer", self.inServer_);
}

template class Command<SrvPing>;
template class CachedCmdCreator<SrvPing>;

}  // namespace poker

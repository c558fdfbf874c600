#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClHandShake.h>

namespace poker {

void ClHandShake::init(std::uint32_t version) {
  clearConnections();
  version_ = version;
}

void ClHandShake::fields(auto& self, auto&& field) {
  // Five bytes, a 16-bit number and a byte, all zero: each is read on its own.
  field.zeros(5);
  field.zeros(2);
  field.zeros(1);
  field("version", self.version_);
  field.zeros(1);
}

template class Command<ClHandShake>;
template class CachedCmdCreator<ClHandShake>;

}  // namespace poker

#include <CommandProcessor/commands/session/PingInfo.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<PingInfo>;

}  // namespace poker

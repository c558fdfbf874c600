#include <CommandProcessor/types/ReplayInfo.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<ReplayInfo>;

}  // namespace poker

#include <CommandProcessor/types/GameStartupInfo.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<GameStartupInfo>;

}  // namespace poker

#include <CommandProcessor/types/PromoBucksInfo.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<PromoBucksInfo>;

}  // namespace poker

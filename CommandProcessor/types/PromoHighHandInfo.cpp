#include <CommandProcessor/types/PromoHighHandInfo.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<PromoHighHandInfo>;

}  // namespace poker

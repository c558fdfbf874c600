#include <CommandProcessor/types/TourMoneyType.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<TourMoneyType>;

}  // namespace poker

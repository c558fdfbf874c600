#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/TourPlayerEntry.h>

namespace poker {

template class Record<TourPlayerEntry>;
template class DbRecord<TourPlayerEntry>;

}  // namespace poker

#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/TournamentsInfo.h>

namespace poker {

template class Record<TourListCost>;
template class DbRecord<TourListCost>;
template class Record<TourListEntry>;
template class DbRecord<TourListEntry>;
template class Record<TournamentsInfo>;
template class DbRecord<TournamentsInfo>;

}  // namespace poker

#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/MultiTourneyInfo.h>

namespace poker {

template class Record<MultiTourneyInfo>;
template class DbRecord<MultiTourneyInfo>;

}  // namespace poker

#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/TournamentDetailedInfo.h>

namespace poker {

template class Record<TourPlayerMoneyEntry>;
template class DbRecord<TourPlayerMoneyEntry>;
template class Record<TournamentDetailedInfo>;
template class DbRecord<TournamentDetailedInfo>;

}  // namespace poker

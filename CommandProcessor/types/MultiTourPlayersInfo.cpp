#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/MultiTourPlayersInfo.h>

namespace poker {

template class Record<MultiTourPlayerEntry>;
template class DbRecord<MultiTourPlayerEntry>;
template class Record<MultiTourPlayersInfo>;
template class DbRecord<MultiTourPlayersInfo>;

}  // namespace poker

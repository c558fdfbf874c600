#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/PrizeFundInfo.h>

namespace poker {

template class Record<PrizeFundInfo>;
template class DbRecord<PrizeFundInfo>;

}  // namespace poker

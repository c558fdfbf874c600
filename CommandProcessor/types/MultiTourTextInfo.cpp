#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/MultiTourTextInfo.h>

namespace poker {

template class Record<MultiTourTextInfo>;
template class DbRecord<MultiTourTextInfo>;

}  // namespace poker

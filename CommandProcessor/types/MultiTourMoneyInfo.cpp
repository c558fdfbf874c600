#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/MultiTourMoneyInfo.h>

namespace poker {

template class Record<MultiTourMoneyInfo>;
template class DbRecord<MultiTourMoneyInfo>;

}  // namespace poker

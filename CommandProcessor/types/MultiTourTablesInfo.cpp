#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/MultiTourTablesInfo.h>

namespace poker {

template class Record<MultiTourTableEntry>;
template class DbRecord<MultiTourTableEntry>;
template class Record<MultiTourTablesInfo>;
template class DbRecord<MultiTourTablesInfo>;

}  // namespace poker

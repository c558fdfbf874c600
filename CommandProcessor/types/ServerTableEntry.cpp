#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/ServerTableEntry.h>

namespace poker {

template class Record<ServerTableEntry>;
template class DbRecord<ServerTableEntry>;

}  // namespace poker

#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/ServerUpdateInfo.h>

namespace poker {

template class Record<ServerUpdateInfo>;
template class DbRecord<ServerUpdateInfo>;

}  // namespace poker

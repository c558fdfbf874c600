#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/MultiStartInfo.h>

namespace poker {

template class Record<MultiStartInfo>;
template class DbRecord<MultiStartInfo>;

}  // namespace poker

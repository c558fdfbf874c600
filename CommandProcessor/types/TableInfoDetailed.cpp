#include <CommandProcessor/types/TableInfoDetailed.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<TablePlayerInfo>;
template class Record<TableInfoDetailed>;

}  // namespace poker

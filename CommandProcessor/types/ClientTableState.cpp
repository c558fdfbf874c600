#include <CommandProcessor/types/ClientTableState.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<BaseTableState>;
template class Record<ClientSeatState>;
template class Record<ClientTableState>;

}  // namespace poker

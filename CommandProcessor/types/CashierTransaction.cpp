#include <CommandProcessor/types/CashierTransaction.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<CashierTransaction>;

}  // namespace poker

#include <CommandProcessor/types/CreditCardInfo.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<CreditCardInfo>;

}  // namespace poker

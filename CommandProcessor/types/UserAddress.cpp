#include <CommandProcessor/types/UserAddress.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<UserAddress>;

}  // namespace poker

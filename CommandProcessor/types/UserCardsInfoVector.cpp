#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/types/UserCardsInfoVector.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<UserCardPack>;
template class Record<UserCardsInfoVector>;

}  // namespace poker

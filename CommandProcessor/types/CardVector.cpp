#include <CommandProcessor/types/CardVector.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<CardVector>;

}  // namespace poker

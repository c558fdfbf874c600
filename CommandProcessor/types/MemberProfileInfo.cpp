#include <CommandProcessor/types/MemberProfileInfo.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

template class Record<MemberProfileInfo>;

}  // namespace poker

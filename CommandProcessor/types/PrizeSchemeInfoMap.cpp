#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/PrizeSchemeInfoMap.h>

namespace poker {

template class Record<PrizeSchemeInfoRow>;
template class DbRecord<PrizeSchemeInfoRow>;
template class Record<PrizeSchemeInfoMap>;
template class DbRecord<PrizeSchemeInfoMap>;

}  // namespace poker

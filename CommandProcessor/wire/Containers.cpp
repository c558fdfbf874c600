#include <CommandProcessor/wire/Int2StringSer.h>
#include <CommandProcessor/wire/RawDataHolder.h>
#include <CommandProcessor/wire/RecordImpl.h>
#include <CommandProcessor/wire/String2String.h>
#include <CommandProcessor/wire/StringList.h>

namespace poker {

template class Record<String2String>;
template class Record<Int2StringSer>;
template class Record<RawDataHolder>;
template class Record<StringVector>;
template class Record<StringList>;

}  // namespace poker

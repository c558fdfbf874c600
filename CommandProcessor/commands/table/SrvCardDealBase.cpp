#include <CommandProcessor/commands/table/SrvCardDealBase.h>
#include <CommandProcessor/core/FieldsImpl.h>

namespace poker {

template class BaseCommand<SrvCardDealBase, SrvTableStateUpdate>;

}  // namespace poker

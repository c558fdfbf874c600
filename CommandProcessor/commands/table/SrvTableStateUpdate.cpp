#include <CommandProcessor/commands/table/SrvTableStateUpdate.h>
#include <CommandProcessor/core/FieldsImpl.h>

namespace poker {

template class BaseCommand<SrvTableStateUpdate>;

}  // namespace poker

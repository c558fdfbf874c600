#include <CommandProcessor/commands/SrvCommandGame.h>
#include <CommandProcessor/core/FieldsImpl.h>

namespace poker {

template class BaseCommand<SrvCommandGame>;

}  // namespace poker

#include <CommandProcessor/platform/TypeName.h>
#include <CommandProcessor/pool/CachedCmdCreator.h>

namespace poker {

void registerPool(const std::type_info& type, const DebugStaticLogger::DebugStaticLoggerData& data) {
  DebugStaticLogger::instance()->addSizeForType(readableTypeName(type), &data);
}

}  // namespace poker

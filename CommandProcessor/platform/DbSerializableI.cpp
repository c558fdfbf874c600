#include <CommandProcessor/platform/DbSerializableI.h>

namespace poker {

DbTextError::~DbTextError() = default;
DbSerializableI::~DbSerializableI() = default;

}  // namespace poker

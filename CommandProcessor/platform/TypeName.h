#pragma once

#include <CommandProcessor/platform/Export.h>

#include <string>
#include <typeinfo>

namespace poker {

/// The type's name as the source spells it, with this system's own namespace left out wherever it stands:
/// "ClLogon", "CachedCmdCreator<ClLogon>". A name that cannot be decoded is returned as the compiler gives it.
COMMANDPROCESSOR_API std::string readableTypeName(const std::type_info& type);

}  // namespace poker

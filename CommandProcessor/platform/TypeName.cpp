#include <CommandProcessor/platform/TypeName.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

#if defined(__GNUC__)
#include <cxxabi.h>
#endif

namespace poker {
namespace {

bool continuesName(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == ':';
}

std::string withoutNamespace(std::string_view name) {
  constexpr std::string_view kNamespace = "poker::";
  std::string result;
  result.reserve(name.size());
  for (std::size_t i = 0; i < name.size(); ++i) {
    const bool nameStarts = i == 0 || !continuesName(name[i - 1]);
    if (nameStarts && name.substr(i).starts_with(kNamespace)) {
      i += kNamespace.size();
      if (i == name.size()) break;
    }
    result += name[i];
  }
  return result;
}

}  // namespace

std::string readableTypeName(const std::type_info& type) {
#if defined(__GNUC__)
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> decoded(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                            &std::free);
  if (status == 0 && decoded) return withoutNamespace(decoded.get());
#endif
  return withoutNamespace(type.name());
}

}  // namespace poker

#include <CommandProcessor/commands/SrvUnknownValues.h>
#include <CommandProcessor/core/FieldsImpl.h>

namespace poker {

void SrvUnknownValues::init() {
  clearConnections();
  values_.clear();
}

void SrvUnknownValues::addData(const String2String& data) {
  for (const auto& [key, value] : data) values_.set(key, value);
}

const char* SrvUnknownValues::value(const char* key) const {
  const auto found = values_.find(key != nullptr ? key : "");
  return found != values_.end() ? found->second.c_str() : "";
}

template class BaseCommand<SrvUnknownValues>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClSSLHandshakeData.h>

namespace poker {

void ClSSLHandshakeData::init(const unsigned char* data, std::uint32_t size, SSLDataType sslDataType) {
  clearConnections();
  data_.assign(data, data + (data != nullptr ? size : 0));
  sslDataType_ = sslDataType;
}

void ClSSLHandshakeData::fields(auto& self, auto&& field) {
  field("data", secret(bytes<std::uint32_t>(self.data_)));
  field("sslDataType", self.sslDataType_);
}

template class Command<ClSSLHandshakeData>;
template class CachedCmdCreator<ClSSLHandshakeData>;

}  // namespace poker

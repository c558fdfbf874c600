#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvSSLHandshakeData.h>

namespace poker {

void SrvSSLHandshakeData::init(const unsigned char* data, std::uint32_t size, SSLDataType sslDataType) {
  clearConnections();
  data_.assign(data, data + (data != nullptr ? size : 0));
  sslDataType_ = sslDataType;
}

void SrvSSLHandshakeData::fields(auto& self, auto&& field) {
  field("data", secret(bytes<std::uint32_t>(self.data_)));
  field("sslDataType", self.sslDataType_);
}

template class Command<SrvSSLHandshakeData>;
template class CachedCmdCreator<SrvSSLHandshakeData>;

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/session/SSLDataType.h>

#include <cstdint>
#include <vector>

namespace poker {

/// The client's end of the secure channel sends a handshake record. The host's connection layer takes it:
/// process() does nothing.
class COMMANDPROCESSOR_API ClSSLHandshakeData final : public Command<ClSSLHandshakeData> {
 public:
  /// Copies the record.
  /// @param data  `size` bytes, none of them this object's own; null makes an empty record, whatever the size
  void init(const unsigned char* data, std::uint32_t size, SSLDataType sslDataType);

  /// size() bytes that live until the next init() or deserialize(); may be null when there are none.
  const unsigned char* data() const { return data_.data(); }
  std::uint32_t size() const { return static_cast<std::uint32_t>(data_.size()); }
  SSLDataType sslDataType() const { return sslDataType_; }

 private:
  friend FieldAccess;
  ClSSLHandshakeData() = default;
  static void fields(auto& self, auto&& field);

  std::vector<std::uint8_t> data_;
  SSLDataType sslDataType_{};
};

}  // namespace poker

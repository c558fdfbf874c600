#pragma once

#include <CommandProcessor/wire/Record.h>

#include <cstdint>

namespace poker {

/// Two bytes whose meaning is the client's own; the server only sees them pass.
class COMMANDPROCESSOR_API PingInfo : public Record<PingInfo> {
 public:
  /// Both bytes 0.
  PingInfo() = default;
  PingInfo(std::uint8_t first, std::uint8_t second) : first_(first), second_(second) {}

  std::uint8_t first() const { return first_; }
  std::uint8_t second() const { return second_; }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("first", self.first_);
    field("second", self.second_);
  }

  std::uint8_t first_ = 0;
  std::uint8_t second_ = 0;
};

}  // namespace poker

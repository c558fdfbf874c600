#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/session/PingInfo.h>

#include <cstdint>

namespace poker {

/// The client measures the connection. Answered by SrvPing.
class COMMANDPROCESSOR_API ClPing final : public Command<ClPing> {
 public:
  /// Both bytes 0.
  void init();
  /// @param second  its low byte is kept
  void init(std::uint8_t first, std::uint32_t second);

  const PingInfo& info() const { return info_; }

 private:
  friend FieldAccess;
  ClPing() = default;
  static void fields(auto& self, auto&& field);

  PingInfo info_;
};

}  // namespace poker

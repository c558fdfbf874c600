#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// A client shows that it is alive. Answered by SrvKeepAliveReply with the same number.
class COMMANDPROCESSOR_API ClKeepAlive final : public Command<ClKeepAlive> {
 public:
  /// @param sequenceNumber  chosen by the client; the reply echoes it
  void init(std::uint32_t sequenceNumber);

  std::uint32_t sequenceNumber() const { return sequenceNumber_; }

 private:
  friend FieldAccess;
  ClKeepAlive() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t sequenceNumber_ = 0;
};

}  // namespace poker

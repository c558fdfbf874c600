#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// The server answers ClKeepAlive.
class COMMANDPROCESSOR_API SrvKeepAliveReply final : public Command<SrvKeepAliveReply> {
 public:
  /// @param sequenceNumber  that of the ClKeepAlive
  void init(std::uint32_t sequenceNumber);

  std::uint32_t sequenceNumber() const { return sequenceNumber_; }

 private:
  friend FieldAccess;
  SrvKeepAliveReply() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t sequenceNumber_ = 0;
};

}  // namespace poker

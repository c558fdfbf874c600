#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// The first command of a connection. Answered by SrvHandShaked, or by SrvConnectError, SrvBusy, ServiceNotAvailable,
/// SrvForward or SrvMaintenance.
class COMMANDPROCESSOR_API ClHandShake final : public Command<ClHandShake> {
 public:
  /// @param version  the protocol version that the client speaks
  void init(std::uint32_t version);

  std::uint32_t version() const { return version_; }

 private:
  friend FieldAccess;
  ClHandShake() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t version_ = 0;
};

}  // namespace poker

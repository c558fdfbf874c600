#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// The server answers ClPing and tells how long the ping stayed in it.
class COMMANDPROCESSOR_API SrvPing final : public Command<SrvPing> {
 public:
  /// @param startTime  when the ping came in: seconds as `time` counts them; later than 2038, their low 32 bits
  void init(std::int32_t startTime);

  /// Whole seconds from the start time to the last serialize(), modulo 256. The sending object has it too, once sent.
  std::uint8_t inServer() const { return inServer_; }

 private:
  friend FieldAccess;
  SrvPing() = default;
  static void fields(auto& self, auto&& field);
  void aboutToSerialize(SerializeCommandBuf&) const;

  std::int32_t startTime_ = 0;
  mutable std::uint8_t inServer_ = 0;
};

}  // namespace poker

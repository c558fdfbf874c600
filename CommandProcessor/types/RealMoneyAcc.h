#pragma once

#include <CommandProcessor/platform/Export.h>
#include <CommandProcessor/wire/FieldAccess.h>

#include <cstdint>

namespace poker {

class DeserializeCommandBuf;
class SerializeCommandBuf;

/// A player's real-money account, as the logon tells it: one 16-bit descriptor whose bits client and server agree on.
class COMMANDPROCESSOR_API RealMoneyAcc {
 public:
  RealMoneyAcc() = default;
  explicit RealMoneyAcc(std::uint16_t descriptor) : descriptor_(descriptor) {}

  // The two virtual operations, in the order of their slots. (The objects are held by value, never deleted through this
  // class, so that no destructor is needed in front of them.)
  virtual void serialize(SerializeCommandBuf& buf) const;
  /// @throws CommandDeserializeException*
  virtual void deserialize(DeserializeCommandBuf& buf);

  std::uint16_t descriptor() const { return descriptor_; }
  friend bool operator==(const RealMoneyAcc& a, const RealMoneyAcc& b) { return a.descriptor_ == b.descriptor_; }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("descriptor", self.descriptor_); }

  std::uint16_t descriptor_ = 0;
};

}  // namespace poker

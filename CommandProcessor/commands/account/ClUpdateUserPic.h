#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <vector>

namespace poker {

/// A user uploads its picture; an empty one removes it.
class COMMANDPROCESSOR_API ClUpdateUserPic final : public Command<ClUpdateUserPic> {
 public:
  /// Copies the picture.
  /// @param picture  none of this object's own; null is no picture, whatever the size
  /// @param size     in bytes
  void init(const char* picture, unsigned short size);

  /// getPicSize() bytes of an image file, which live until the next init() or deserialize(); may be null when there are
  /// none.
  const char* getPicBuffer() const { return reinterpret_cast<const char*>(picture_.data()); }
  std::uint16_t getPicSize() const { return static_cast<std::uint16_t>(picture_.size()); }

 private:
  friend FieldAccess;
  ClUpdateUserPic() = default;
  static void fields(auto& self, auto&& field);

  std::vector<std::uint8_t> picture_;
};

}  // namespace poker

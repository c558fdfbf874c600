#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>
#include <vector>

namespace poker {

/// A player's picture, in answer to ClGetNewPicture.
class COMMANDPROCESSOR_API SrvSendUserPic final : public Command<SrvSendUserPic> {
 public:
  /// Copies the picture.
  /// @param picture  none of this object's own; null is no picture, whatever the size
  /// @param size     in bytes
  /// @param picCode  of this very picture: clients keep it and ask again when the profile tells another one
  void init(const std::string& userName, const char* picture, unsigned size, const std::string& picCode);

  /// getPicSize() bytes of an image file, which live until the next init() or deserialize(); may be null when there are
  /// none.
  const char* getPicBuffer() const { return reinterpret_cast<const char*>(picture_.data()); }
  std::uint32_t getPicSize() const { return static_cast<std::uint32_t>(picture_.size()); }
  const std::string& getPicCode() const { return picCode_; }
  const std::string& usrName() const { return userName_; }

 private:
  friend FieldAccess;
  SrvSendUserPic() = default;
  static void fields(auto& self, auto&& field);

  std::vector<std::uint8_t> picture_;
  std::string picCode_;
  std::string userName_;
};

}  // namespace poker

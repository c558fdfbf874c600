#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>

namespace poker {

/// A player won a promotion. Sent to all players whom it concerns.
class COMMANDPROCESSOR_API SrvUserWonPromotion final : public Command<SrvUserWonPromotion> {
 public:
  /// @param dealID    the deal in which it was won
  /// @param handText  the winning hand as players read it
  void init(const std::string& userName, const std::uint32_t& dealID, const std::string& handText);

  const std::string& userName() const { return userName_; }
  std::uint32_t dealID() const { return dealID_; }
  const std::string& handText() const { return handText_; }

 private:
  friend FieldAccess;
  SrvUserWonPromotion() = default;
  static void fields(auto& self, auto&& field);

  std::string userName_;
  std::uint32_t dealID_ = 0;
  std::string handText_;
};

}  // namespace poker

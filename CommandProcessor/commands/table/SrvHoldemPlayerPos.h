#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/UserAction.h>

#include <cstdint>

namespace poker {

/// Tells a player which position the coming hand brings.
class COMMANDPROCESSOR_API SrvHoldemPlayerPos final : public Command<SrvHoldemPlayerPos> {
 public:
  /// One byte; other values are carried as they are.
  enum PlayerPos : std::uint8_t {
    None = 0,
    Normal = 1,
    SmallBlind = 2,
    BigBlind = 3,
    Post = 4,
    Straddle = 5,
  };

  /// @param action  the blind that the player posts; an action that is none means a normal position
  void init(UserAction action);

  PlayerPos pos() const { return pos_; }
  /// For people: "Small Blind"; empty for positions without a name. Never null.
  static const char* playerPos2String(PlayerPos pos);

 private:
  friend FieldAccess;
  SrvHoldemPlayerPos() = default;
  static void fields(auto& self, auto&& field);

  PlayerPos pos_ = None;
};

}  // namespace poker

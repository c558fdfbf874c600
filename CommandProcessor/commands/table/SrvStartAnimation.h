#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// The client plays an animation.
class COMMANDPROCESSOR_API SrvStartAnimation final : public Command<SrvStartAnimation> {
 public:
  /// Other values are carried as they are.
  enum AnimationType : std::uint32_t {
    NoAnimation = 0,
    Shuffle = 1,
    CollectBets = 2,   ///< the bets move to the pots
    PushPots = 3,      ///< the pots move to their winners
    CollectCards = 4,  ///< all cards move to the dealer
  };

  void init(AnimationType type);

  AnimationType type() const { return type_; }

 private:
  friend FieldAccess;
  SrvStartAnimation() = default;
  static void fields(auto& self, auto&& field);

  AnimationType type_ = NoAnimation;
};

}  // namespace poker

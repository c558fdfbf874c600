#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/TourNames.h>

#include <cstdint>

namespace poker {

/// The blinds go to another level, or are about to.
class COMMANDPROCESSOR_API SrvLevelSwitch final : public Command<SrvLevelSwitch> {
 public:
  /// The bets are those of the level.
  /// @param units      until the next switch: seconds or hands, as `switchType` says
  /// @param switching  the level begins now; otherwise it is announced
  void init(const RealMoneyType& lowBet, const RealMoneyType& highBet, std::int16_t level, std::int32_t units,
            TOUR_NAMES::SwitchType switchType, bool switching);

  const RealMoneyType& getLowBet() const { return lowBet_; }
  const RealMoneyType& getHiBet() const { return highBet_; }
  std::int16_t getLevel() const { return level_; }
  std::int32_t getUnits() const { return units_; }
  TOUR_NAMES::SwitchType getSwitchType() const { return switchType_; }
  bool isSwitching() const { return switching_; }

 private:
  friend FieldAccess;
  SrvLevelSwitch() = default;
  static void fields(auto& self, auto&& field);

  RealMoneyType lowBet_;
  RealMoneyType highBet_;
  std::int16_t level_ = 0;
  std::int32_t units_ = 0;
  TOUR_NAMES::SwitchType switchType_ = TOUR_NAMES::SwitchType::ByTime;
  bool switching_ = false;
};

}  // namespace poker

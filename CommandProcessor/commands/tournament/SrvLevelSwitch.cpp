#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvLevelSwitch.h>

namespace poker {

void SrvLevelSwitch::init(const RealMoneyType& lowBet, const RealMoneyType& highBet, std::int16_t level,
                          std::int32_t units, TOUR_NAMES::SwitchType switchType, bool switching) {
  clearConnections();
  lowBet_ = lowBet;
  highBet_ = highBet;
  level_ = level;
  units_ = units;
  switchType_ = switchType;
  switching_ = switching;
}

void SrvLevelSwitch::fields(auto& self, auto&& field) {
  field("lowBet", self.lowBet_);
  field("highBet", self.highBet_);
  field("level", as<std::int32_t>(self.level_));
  field("units", self.units_);
  field("switchType", self.switchType_);
  field("switching", self.switching_);
}

template class Command<SrvLevelSwitch>;
template class CachedCmdCreator<SrvLevelSwitch>;

}  // namespace poker

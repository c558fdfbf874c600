#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvBetRoundComplete.h>

namespace poker {

void SrvBetRoundComplete::init(const Pot& pot, bool moveChips, bool showCheckBoxes, const RealMoneyType& bet,
                               const RealMoneyType& rake) {
  clearConnections();
  pot_ = pot;
  moveChips_ = moveChips;
  showCheckBoxes_ = showCheckBoxes;
  bet_ = bet;
  rake_ = rake;
}

void SrvBetRoundComplete::fields(auto& self, auto&& field) {
  field("pot", self.pot_);
  // A flag is written as its whole half of the byte and read from any bit of it.
  field("flags", flags(bits<0x0F>("moveChips", self.moveChips_), bits<0xF0>("showCheckBoxes", self.showCheckBoxes_)));
  field("bet", self.bet_);
  field("rake", self.rake_);
}

template class Command<SrvBetRoundComplete>;
template class CachedCmdCreator<SrvBetRoundComplete>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClSitDown.h>

namespace poker {

void ClSitDown::init(SeatID seat, const RealMoneyType& money, const TourMoneyChooser& chooser) {
  clearConnections();
  seatID_ = seat;
  money_ = money;
  moneyChooser_ = chooser;
}

void ClSitDown::fields(auto& self, auto&& field) {
  field("seatID", self.seatID_);
  field("money", self.money_);
  field("moneyChooser", self.moneyChooser_);
}

template class Command<ClSitDown>;
template class CachedCmdCreator<ClSitDown>;

}  // namespace poker

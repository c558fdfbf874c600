#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourMoney.h>

namespace poker {

void SrvTourMoney::init(const TourMoneyType& buyIn, const TourMoneyType& fee, const TourMoneyType& total,
                        std::uint32_t tourID) {
  clearConnections();
  buyIn_ = buyIn;
  fee_ = fee;
  total_ = total;
  tourID_ = tourID;
}

void SrvTourMoney::fields(auto& self, auto&& field) {
  field("buyIn", self.buyIn_);
  field("fee", self.fee_);
  field("total", self.total_);
  field("tourID", self.tourID_);
}

template class Command<SrvTourMoney>;
template class CachedCmdCreator<SrvTourMoney>;

}  // namespace poker

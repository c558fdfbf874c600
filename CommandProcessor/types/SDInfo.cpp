#include <CommandProcessor/types/SDInfo.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

void SDInfo::set(const CardVector& cards, const SeatID& seat, const RealMoneyType& money, WinnerType winnerType) {
  seatID_ = seat;
  money_ = money;
  cards_ = cards;
  winnerType_ = winnerType;
}

template class Record<SDInfo>;
template class Record<SDInfoVector>;

}  // namespace poker

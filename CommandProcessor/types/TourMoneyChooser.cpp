#include <CommandProcessor/types/TourMoneyChooser.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

void TourMoneyChooser::choose(bool payCash) {
  if (chosen_) return;
  (payCash ? tourMoney_ : cash_) = RealMoneyType();
  chosen_ = true;
}

const TourMoneyChooser& TourMoneyChooser::empty() {
  static const TourMoneyChooser theEmpty;
  return theEmpty;
}

template class Record<TourMoneyChooser>;

}  // namespace poker

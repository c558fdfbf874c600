#include <CommandProcessor/types/Pot.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

void Pot::clear() {
  mainPot_ = RealMoneyType();
  sidePots_.clear();
}

RealMoneyType Pot::total() const {
  RealMoneyType sum = mainPot_;
  for (const RealMoneyType& amount : sidePots_) sum += amount;
  return sum;
}

template class Record<Pot>;

}  // namespace poker

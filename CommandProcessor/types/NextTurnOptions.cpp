#include <CommandProcessor/types/NextTurnOptions.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

void NextTurnOptions::addOption(UserAction action, const RealMoneyType& amount) {
  options_.set(action, std::pair(amount, amount));
}

void NextTurnOptions::addOption(UserAction action, const RealMoneyType& minimum, const RealMoneyType& maximum) {
  options_.set(action, std::pair(minimum, maximum));
  haveMinMax_ = true;
}

void NextTurnOptions::getOptionChips(UserAction action, RealMoneyType& minimum, RealMoneyType& maximum) const {
  const auto place = options_.find(action);
  const auto [least, most] = place != options_.end() ? place->second : Options::mapped_type();
  minimum = least;
  maximum = most;
}

std::uint32_t NextTurnOptions::getActionCodes() const {
  std::uint32_t mask = 0;
  for (const auto& [action, range] : options_) mask |= actionBit(action);
  return mask;
}

void NextTurnOptions::clear() {
  options_.clear();
  haveMinMax_ = false;
}

void NextTurnOptions::deserialize(DeserializeCommandBuf& buf) {
  NextTurnOptions read;
  read.Record::deserialize(buf);
  haveMinMax_ = read.haveMinMax_;
  for (const auto& [action, range] : read.options_) options_.set(action, range);
}

template class Record<NextTurnOptions>;

}  // namespace poker

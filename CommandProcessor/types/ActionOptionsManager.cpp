#include <CommandProcessor/types/ActionOptionsManager.h>

namespace poker {

void ActionOptionsManager::addOption(UserAction action, const RealMoneyType& amount, const SeatID& seat) {
  choices_[seat].set(action, amount);
}

void ActionOptionsManager::removeOption(UserAction action, const SeatID& seat) {
  if (choices_.contains(seat)) choices_[seat].erase(action);
}

void ActionOptionsManager::clearOptions(const SeatID& seat) {
  if (choices_.contains(seat)) choices_[seat].clear();
}

void ActionOptionsManager::clearOptionForAll() { choices_.clear(); }

std::pair<UserAction, RealMoneyType> ActionOptionsManager::match(const Amounts& offered, const SeatID& seat) const {
  const auto seatChoices = choices_.find(seat);
  if (seatChoices != choices_.end()) {
    // In ascending code order, so that the first that fits has the lowest code.
    for (const auto& [action, wanted] : seatChoices->second) {
      const auto offer = offered.find(action);
      if (offer == offered.end()) continue;
      if (wanted == kZeroMoney || wanted == offer->second) return {action, offer->second};
    }
  }
  return {UserAction::NoAction, RealMoneyType::fromHundredths(-100)};
}

}  // namespace poker

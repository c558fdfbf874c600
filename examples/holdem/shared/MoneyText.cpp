#include <examples/holdem/shared/MoneyText.h>

namespace poker::holdem {

std::optional<RealMoneyType> moneyFromText(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789";
  const std::size_t point = text.find('.');
  const std::string_view units = text.substr(0, point);
  const std::string_view fraction = point == text.npos ? "0" : text.substr(point + 1);
  const bool isNumber = units.find_first_not_of(kDigits) == units.npos &&
                        fraction.find_first_not_of(kDigits) == fraction.npos && !units.empty() && !fraction.empty() &&
                        fraction.size() <= 2;
  if (!isNumber) return std::nullopt;
  const RealMoneyType amount = RealMoneyType::fromText(text);
  return amount <= kLargestMoney ? std::optional(amount) : std::nullopt;
}

}  // namespace poker::holdem

#pragma once

#include <CommandProcessor/types/RealMoneyType.h>

#include <optional>
#include <string_view>

namespace poker::holdem {

/// An amount as people write it: "12", "12.5" or "12.50", up to kLargestMoney. Nothing for anything else.
std::optional<RealMoneyType> moneyFromText(std::string_view text);

}  // namespace poker::holdem

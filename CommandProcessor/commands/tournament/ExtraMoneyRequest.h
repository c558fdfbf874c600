#pragma once

#include <cstdint>

namespace poker {

/// What ClGetExtraMoney asks for and SrvGetExtraMoneyReply answers. Travels as one byte; values without a name are
/// carried as they are.
enum class ExtraMoneyRequest : std::uint8_t {
  Rebuy = 1,  ///< more chips while re-buys are allowed
  AddOn = 2,  ///< the chips that everybody may buy once more at the end of the re-buys
};

}  // namespace poker

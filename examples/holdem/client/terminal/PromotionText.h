#pragma once

#include <CommandProcessor/commands/AllCommands.h>

#include <string>

namespace poker::holdem {

/// What a notice about a promotion says, in a line for people.
std::string promotionText(const SrvPromoNotify& notice);
/// "Ann wins the promotion with Four Aces, in hand 12".
std::string winnerText(const SrvUserWonPromotion& winner);

}  // namespace poker::holdem

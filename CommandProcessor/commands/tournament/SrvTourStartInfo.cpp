#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourStartInfo.h>
#include <CommandProcessor/types/DurationText.h>

#include <string>

namespace poker {

void SrvTourStartInfo::init(std::int32_t players, std::int32_t seconds) {
  clearConnections();
  players_ = players;
  seconds_ = seconds;
}

// Blanks and line breaks are missing where clients have always missed them.
std::string SrvTourStartInfo::infoText() const {
  const std::string duration = durationToString(seconds_);
  const std::string players = std::to_string(players_);
  std::string text;
  switch (players_) {
    case SuspendedSpecialPlayerCountValue:
      return "The table will resume when one of the players returns.";
    case SusOnMoveSpecialPlayerCountValue:
      return "The table will start in " + duration;
    case TimeBreakSpecialPlayerCountValue:
      text = "The tournament is in time break. ";
      break;
    case HostBreakSpecialPlayerCountValue:
      text = "The tournament is suspended by the HOST. ";
      break;
    default:
      if (players_ > 0 && seconds_ > 0) {
        text = "The tournament will start when another " + players + " player(s) register.";
        text += "After " + std::to_string(seconds_) + "seconds (" + std::to_string(seconds_ / 60) + " min)";
      } else if (players_ == 1) {
        text = "The tournament will start when one more player registers.";
      } else if (players_ > 1) {
        text = "The tournament will start when another " + players + " players register.";
      }
  }
  if (seconds_ > 0) text += "The tournament will start in " + duration;
  return text;
}

void SrvTourStartInfo::fields(auto& self, auto&& field) {
  field("players", self.players_);
  field("seconds", self.seconds_);
}

template class Command<SrvTourStartInfo>;
template class CachedCmdCreator<SrvTourStartInfo>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourTourneyStatus.h>

#include <iterator>

namespace poker {

namespace {

// By status; one that nobody can register for yet has not started either.
constexpr const char* kNames[] = {
    "None",
    "Tourney_NotStarted",
    "Tourney_NotStarted",
    "Tourney_Prestarted",
    "Tourney_Started",
    "Tourney_Suspend",
    "Tourney_Finished",
};

}  // namespace

void SrvTourTourneyStatus::init(TOUR_NAMES::TourStatus status, std::uint32_t tourID) {
  clearConnections();
  status_ = status;
  tourID_ = tourID;
}

std::string SrvTourTourneyStatus::toString() const {
  return "SrvTourTourneyStatus - tournament " + std::to_string(tourID_) + ": " + statusStr();
}

std::string SrvTourTourneyStatus::statusStr() const {
  const auto row = static_cast<std::uint8_t>(status_);
  return row < std::size(kNames) ? kNames[row] : "";
}

void SrvTourTourneyStatus::fields(auto& self, auto&& field) {
  field("status", self.status_);
  field("tourID", self.tourID_);
}

template class Command<SrvTourTourneyStatus>;
template class CachedCmdCreator<SrvTourTourneyStatus>;

}  // namespace poker

#include <examples/holdem/server/tournament/TourList.h>

#include <tuple>

namespace poker::holdem {

namespace {

/// All but the version.
auto tied(const TourListEntry& line) {
  return std::tie(line.tournamentID, line.starts, line.name, line.description, line.cost.buyIn, line.cost.fee,
                  line.cost.realMoney, line.cost.currency, line.prizes, line.gameType, line.players, line.maxPlayers,
                  line.tableID, line.status, line.skin);
}

void countIn(TournamentsInfo& info, TOUR_NAMES::TourStatus status) {
  using TOUR_NAMES::TourStatus;
  switch (status) {
    case TourStatus::Announced:
      ++info.announced;
      break;
    case TourStatus::Registering:
      ++info.registering;
      break;
    case TourStatus::Prestarted:
    case TourStatus::Started:
    case TourStatus::Suspended:
      ++info.running;
      break;
    case TourStatus::Finished:
      ++info.finished;
      break;
    case TourStatus::None:
      break;
  }
}

}  // namespace

void TourList::set(const TourListEntry& line) {
  const auto saysSame = [](const TourListEntry& a, const TourListEntry& b) { return tied(a) == tied(b); };
  if (TourListEntry* changed = lines_.set(line.tournamentID, line, saysSame)) changed->version = lines_.version();
}

void TourList::changesSince(std::uint32_t version, TournamentsInfo& changes) const {
  changes.announced = changes.registering = changes.running = changes.finished = 0;
  changes.version = lines_.version();
  changes.type = type_;
  changes.tournaments.clear();
  changes.removedTournaments.clear();
  const std::uint32_t none = 0;
  lines_.forEachChanged(none, [&](std::uint32_t, const TourListEntry& line) { countIn(changes, line.status); });
  lines_.forEachChanged(version,
                        [&](std::uint32_t, const TourListEntry& line) { changes.tournaments.push_back(line); });
  lines_.forEachRemoved(version, [&](std::uint32_t id) { changes.removedTournaments.insert(id); });
  numbers_.tell();
}

}  // namespace poker::holdem

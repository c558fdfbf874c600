#include <examples/holdem/server/tournament/Tournaments.h>

#include <algorithm>
#include <optional>

namespace poker::holdem {

Tournaments::Tournaments(asio::io_context& context, const std::vector<TourSettings>& tournaments, unsigned mostAtOnce,
                         Bank& bank, Members& members, Outbox& outbox, TourHost& host)
    : bank_(bank), members_(members), mostAtOnce_(mostAtOnce) {
  for (const TourSettings& settings : tournaments) {
    all_.push_back(std::make_unique<Tournament>(context, settings, bank_, bank, outbox, host));
  }
}

Tournament* Tournaments::find(std::uint32_t id) {
  const auto place = std::find_if(all_.begin(), all_.end(), [&](const auto& each) { return each->id() == id; });
  return place == all_.end() ? nullptr : place->get();
}

Tournament* Tournaments::findByTable(std::uint32_t tableID) {
  Tournament* tournament = find(tableID / Tournament::kTablesEach);
  return tournament != nullptr && tournament->table(tableID) != nullptr ? tournament : nullptr;
}

SrvTourRegisterResult::Reason Tournaments::enter(Tournament& tournament, const Account& account,
                                                 const std::string& password, const TourMoneyChooser& choice) {
  const auto playsIn = [&](const auto& each) {
    const Tournament::Player* player = each->player(account.id);
    return player != nullptr && player->place == 0 && !each->isOver();
  };
  const auto count = std::count_if(all_.begin(), all_.end(), playsIn);
  // The city is looked up for who may be registered: others may ask as often as they like.
  const std::string& wanted = tournament.settings().password;
  const bool isOpen = tournament.status() == TOUR_NAMES::TourStatus::Registering;
  std::optional<MemberProfileInfo> profile;
  if (isOpen && tournament.player(account.id) == nullptr && (wanted.empty() || password == wanted)) {
    profile = members_.profile(account.name);
  }
  return tournament.enter(account, profile ? profile->city : std::string(), password, choice, count < mostAtOnce_);
}

void Tournaments::welcome(const ConnectionID& client, AccountID account) {
  for (const auto& each : all_) each->welcome(client, account);
}

void Tournaments::suspend() {
  for (const auto& each : all_) each->suspend();
}

void Tournaments::resume() {
  for (const auto& each : all_) each->resume();
}

void Tournaments::close() {
  for (const auto& each : all_) each->close();
}

bool Tournaments::areOver() const {
  return std::all_of(all_.begin(), all_.end(), [](const auto& each) { return each->isOver(); });
}

void Tournaments::settle() {
  for (const auto& each : all_) each->settle();
}

}  // namespace poker::holdem

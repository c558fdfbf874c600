#include <examples/holdem/server/tournament/TourDesk.h>

#include <chrono>
#include <vector>

namespace poker::holdem {

namespace {

constexpr auto kTickTime = std::chrono::seconds(1);

}  // namespace

TourDesk::TourDesk(asio::io_context& context, Tournaments& tournaments, Outbox& outbox)
    : tournaments_(tournaments), outbox_(outbox), timer_(context) {}

bool TourDesk::mayLook(const ConnectionID& client, AccountID account, const Tournament& tournament) {
  if (tournament.mayLook(account)) return true;
  outbox_.add<SrvTourProtectionError>(client, SrvTourProtectionError::Reason::RegisterFirst, tournament.id());
  return false;
}

/// Null when there is no such tournament, or the account may not look at it, which the client is told.
Tournament* TourDesk::findFor(const ConnectionID& client, AccountID account, std::uint32_t tourID) {
  Tournament* tournament = tournaments_.find(tourID);
  return tournament != nullptr && mayLook(client, account, *tournament) ? tournament : nullptr;
}

// Questions

void TourDesk::tellList(const ConnectionID& client, TOUR_NAMES::TourType type, std::uint32_t version) {
  const bool isSingle = type == TOUR_NAMES::TourType::SingleTable;
  if (!isSingle && type != TOUR_NAMES::TourType::MultiTable) {
    list_ = {};
    list_.type = type;
  } else {
    TourList& list = isSingle ? singleTable_ : multiTable_;
    for (const auto& tournament : tournaments_.all()) {
      if (tournament->settings().type() != type) continue;
      tournament->describe(line_);
      list.set(line_);
    }
    list.changesSince(version, list_);
  }
  outbox_.add<SrvTournamentsInfo>(client, list_);
}

void TourDesk::tellDetails(const ConnectionID& client, AccountID account, std::uint32_t tourID, std::uint32_t version) {
  Tournament* tournament = findFor(client, account, tourID);
  if (tournament == nullptr || version == tournament->changes()) return;
  outbox_.add<SrvTourDetails>(client, tournament->details(), tourID);
}

void TourDesk::tellMoney(const ConnectionID& client, std::uint32_t tourID) {
  const Tournament* tournament = tournaments_.find(tourID);
  if (tournament == nullptr) return;
  const TourSettings& settings = tournament->settings();
  outbox_.add<SrvTourMoney>(client, TourMoneyType(settings.buyIn, kZeroMoney), TourMoneyType(settings.fee, kZeroMoney),
                            tournament->price(), tourID);
}

void TourDesk::tellTable(const ConnectionID& client, AccountID account, std::uint32_t tourID, std::uint32_t tableID) {
  Tournament* tournament = findFor(client, account, tourID);
  TourTable* table = tournament != nullptr ? tournament->table(tableID) : nullptr;
  if (table == nullptr) return;
  outbox_.add<SrvTourTableInfo>(client, table->startupInfo(tourID, table->seatOf(account)),
                                tournament->settings().type());
}

void TourDesk::tellPicture(const ConnectionID& client, AccountID account, std::uint32_t tourID) {
  Tournament* tournament = findFor(client, account, tourID);
  if (tournament == nullptr) return;
  const auto [place, isFirst] = unconfirmed_.try_emplace(client.value());
  if (!isFirst) {
    place->second = tourID;
    return;
  }
  tournament->board().tellAll(outbox_, client);
  tellNumbers(client, account, *tournament);
}

void TourDesk::confirmPicture(const ConnectionID& client, AccountID account) {
  const auto confirmed = unconfirmed_.extract(client.value());
  if (confirmed && confirmed.mapped()) tellPicture(client, account, *confirmed.mapped());
}

void TourDesk::tellChanges(const ConnectionID& client, AccountID account, std::uint32_t tourID,
                           const TourBoard::Versions& known) {
  Tournament* tournament = findFor(client, account, tourID);
  if (tournament == nullptr || !tournament->board().tellChanges(outbox_, client, known)) return;
  tellNumbers(client, account, *tournament);
}

void TourDesk::tellNumbers(const ConnectionID& client, AccountID account, Tournament& tournament) {
  const Tournament::Player* player = tournament.player(account);
  const std::uint32_t ownTable = player != nullptr && player->table != nullptr ? player->table->settings().gameID : 0;
  outbox_.add<SrvMultiTourDetailedInfo>(client, tournament.money(), tournament.times(), tournament.numbers(),
                                        tournament.id(), ownTable, player != nullptr);
}

// Subscriptions

void TourDesk::subscribe(const ConnectionID& client, AccountID account, std::uint32_t tourID, std::uint32_t tableID) {
  Tournament* tournament = findFor(client, account, tourID);
  if (tournament == nullptr || tournament->table(tableID) == nullptr) return;
  Subscription& subscription = subscriptions_[{client.value(), tourID}] = {tableID, 0};
  tellChips(client, tourID, subscription);
  armTimer();
}

void TourDesk::unsubscribe(const ConnectionID& client, std::uint32_t tourID) {
  subscriptions_.erase({client.value(), tourID});
}

/// Without players when the table is not there any more.
void TourDesk::tellChips(const ConnectionID& client, std::uint32_t tourID, Subscription& subscription) {
  auto chips = make<SrvUpdatePlayersMoney>(subscription.tableID, tourID);
  Tournament* tournament = tournaments_.find(tourID);
  if (TourTable* table = tournament->table(subscription.tableID)) {
    subscription.told = table->chipChanges();
    table->forEachSeat([&](const SeatID&, const std::string& name, const RealMoneyType& stack, const RealMoneyType& bet,
                           UserState) { chips->addPlayer(name, stack + bet); });
  }
  ConnectionsSet to;
  to.insert(client);
  outbox_.put(std::move(chips), to);
}

void TourDesk::tick() {
  for (auto subscription = subscriptions_.begin(); subscription != subscriptions_.end();) {
    const auto& [client, tourID] = subscription->first;
    TourTable* table = tournaments_.find(tourID)->table(subscription->second.tableID);
    if (table == nullptr || table->chipChanges() != subscription->second.told) {
      tellChips(ConnectionID(client), tourID, subscription->second);
    }
    subscription = table == nullptr ? subscriptions_.erase(subscription) : std::next(subscription);
  }
}

void TourDesk::armTimer() {
  if (isTickSet_ || subscriptions_.empty()) return;
  isTickSet_ = true;
  timer_.expires_after(kTickTime);
  timer_.async_wait([this](const std::error_code& cancelled) {
    if (cancelled) return;
    isTickSet_ = false;
    outbox_.run([this] { tick(); });
    armTimer();
  });
}

void TourDesk::forget(const ConnectionID& client) {
  unconfirmed_.erase(client.value());
  std::erase_if(subscriptions_, [&](const auto& each) { return each.first.first == client.value(); });
}

// Registration

void TourDesk::enter(const ConnectionID& client, const Account& account, const ClTourRegister& request) {
  const std::uint32_t tourID = request.tournamentId();
  Tournament* tournament = tournaments_.find(tourID);
  if (tournament == nullptr) {
    outbox_.add<SrvTourRegisterResult>(client, SrvTourRegisterResult::Reason::Failed, tourID,
                                       TourMoneyChooser::empty());
    return;
  }
  const auto reason = tournaments_.enter(*tournament, account, request.password(), request.moneyChoice());
  outbox_.add<SrvTourRegisterResult>(client, reason, tourID,
                                     TourMoneyChooser(tournament->price().cash, kZeroMoney, true));
  if (reason == SrvTourRegisterResult::Reason::Registered) tournament->welcome(client, account.id);
}

void TourDesk::withdraw(const ConnectionID& client, AccountID account, std::uint32_t tourID) {
  Tournament* tournament = tournaments_.find(tourID);
  const auto reason = tournament != nullptr ? tournament->withdraw(account) : SrvTourUnregisterResult::Reason::Failed;
  outbox_.add<SrvTourUnregisterResult>(client, reason, tourID);
}

}  // namespace poker::holdem

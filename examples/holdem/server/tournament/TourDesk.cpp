#include <examples/holdem/server/tournament/TourDesk.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace poker::holdem {

namespace {

constexpr auto kTickTime = std::chrono::seconds(1);
/// Between two long answers of a kind.
constexpr auto kLongAnswerTime = std::chrono::seconds(1);

}  // namespace

TourDesk::TourDesk(asio::io_context& context, Tournaments& tournaments, Outbox& outbox,
                   VersionNumbers::Reserve reserveNumbers)
    : context_(context),
      tournaments_(tournaments),
      outbox_(outbox),
      numbers_(std::move(reserveNumbers)),
      tick_(context) {}

TourDesk::Looker& TourDesk::lookerOf(const ConnectionID& client) {
  return lookers_.try_emplace(client.value(), context_).first->second;
}

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
  Looker& looker = lookerOf(client);
  const Clock::time_point now = Clock::now();
  if (now < looker.details.next) {
    looker.details.waiting = {account, tourID, version};
    armTimer(client, looker);
    return;
  }
  looker.details.next = now + kLongAnswerTime;
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
  Looker& looker = lookerOf(client);
  const Clock::time_point now = Clock::now();
  if (looker.unconfirmed || now < looker.pictures.next) {
    looker.pictures.waiting = {account, tourID, 0};
    armTimer(client, looker);
    return;
  }
  looker.pictures.next = now + kLongAnswerTime;
  looker.unconfirmed = tourID;
  looker.pictured.insert(tourID);
  tournament->board().tellAll(outbox_, client);
  tellNumbers(client, account, *tournament);
}

void TourDesk::confirmPicture(const ConnectionID& client) {
  Looker& looker = lookerOf(client);
  looker.unconfirmed.reset();
  armTimer(client, looker);
}

void TourDesk::tellChanges(const ConnectionID& client, AccountID account, std::uint32_t tourID,
                           const TourBoard::Versions& known) {
  Tournament* tournament = findFor(client, account, tourID);
  if (tournament == nullptr) return;
  const Looker& looker = lookerOf(client);
  const TourBoard& board = tournament->board();
  if (looker.pictured.contains(tourID) && board.knows(known) && board.changes(known) <= kMostChanges) {
    if (board.tellChanges(outbox_, client, known)) tellNumbers(client, account, *tournament);
  } else if (looker.unconfirmed != tourID) {
    tellPicture(client, account, tourID);
  }
}

/// For what the connection waits for, if anything can be answered at some time.
void TourDesk::armTimer(const ConnectionID& client, Looker& looker) {
  Clock::time_point next = Clock::time_point::max();
  if (looker.details.waiting) next = looker.details.next;
  if (looker.pictures.waiting && !looker.unconfirmed) next = std::min(next, looker.pictures.next);
  if (next == Clock::time_point::max()) return;
  looker.timer.expires_at(next);
  looker.timer.async_wait([this, client](const std::error_code& cancelled) {
    if (!cancelled) outbox_.run([&] { answerWaiting(client); });
  });
}

void TourDesk::answerWaiting(const ConnectionID& client) {
  const auto place = lookers_.find(client.value());
  if (place == lookers_.end()) return;
  // What cannot be answered yet waits again, and sets the timer.
  Looker& looker = place->second;
  if (const auto asked = std::exchange(looker.details.waiting, std::nullopt)) {
    tellDetails(client, asked->account, asked->tourID, asked->version);
  }
  if (const auto asked = std::exchange(looker.pictures.waiting, std::nullopt)) {
    tellPicture(client, asked->account, asked->tourID);
  }
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
  if (tournament == nullptr) return;
  TourTable* table = tournament->table(tableID);
  if (table == nullptr) return;
  subscriptions_[{client.value(), tourID}] = {tableID, table->chipChanges()};
  ConnectionsSet to;
  to.insert(client);
  tellChips(to, tourID, tableID, table);
  armTick();
}

void TourDesk::unsubscribe(const ConnectionID& client, std::uint32_t tourID) {
  subscriptions_.erase({client.value(), tourID});
}

/// Without players when the table is null.
void TourDesk::tellChips(const ConnectionsSet& to, std::uint32_t tourID, std::uint32_t tableID, TourTable* table) {
  auto chips = make<SrvUpdatePlayersMoney>(tableID, tourID);
  if (table != nullptr) {
    table->forEachStack([&](const std::string& name, const RealMoneyType& stack) { chips->addPlayer(name, stack); });
  }
  outbox_.put(std::move(chips), to);
}

void TourDesk::tick() {
  struct Watched {
    std::uint32_t tourID;
    TourTable* table;  // null: broken
    ConnectionsSet outdated;
  };
  std::map<std::uint32_t, Watched> tables;  // by number
  for (auto each = subscriptions_.begin(); each != subscriptions_.end();) {
    const auto& [client, tourID] = each->first;
    Subscription& subscription = each->second;
    const auto [place, isFirst] = tables.try_emplace(subscription.tableID);
    Watched& watched = place->second;
    if (isFirst) {
      watched.tourID = tourID;
      watched.table = tournaments_.find(tourID)->table(subscription.tableID);
    }
    if (watched.table == nullptr) {
      watched.outdated.insert(ConnectionID(client));
      each = subscriptions_.erase(each);
      continue;
    }
    const std::uint64_t changes = watched.table->chipChanges();
    if (std::exchange(subscription.told, changes) != changes) watched.outdated.insert(ConnectionID(client));
    ++each;
  }
  for (const auto& [tableID, watched] : tables) {
    if (!watched.outdated.empty()) tellChips(watched.outdated, watched.tourID, tableID, watched.table);
  }
}

void TourDesk::armTick() {
  if (isTickSet_ || subscriptions_.empty()) return;
  isTickSet_ = true;
  tick_.expires_after(kTickTime);
  tick_.async_wait([this](const std::error_code& cancelled) {
    if (cancelled) return;
    isTickSet_ = false;
    outbox_.run([this] { tick(); });
    armTick();
  });
}

void TourDesk::forget(const ConnectionID& client) {
  lookers_.erase(client.value());
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
  using Reason = SrvTourRegisterResult::Reason;
  const bool isTry = !tournament->settings().password.empty() && !request.password().empty();
  unsigned& wrong = lookerOf(client).wrongTries[tourID];
  const auto reason = isTry && wrong >= kPasswordTries
                          ? Reason::WrongPassword
                          : tournaments_.enter(*tournament, account, request.password(), request.moneyChoice());
  if (reason == Reason::WrongPassword) {
    wrong = std::min(wrong + 1, kPasswordTries);
  } else if (reason == Reason::Registered) {
    wrong = 0;
  }
  outbox_.add<SrvTourRegisterResult>(client, reason, tourID,
                                     TourMoneyChooser(tournament->price().cash, kZeroMoney, true));
  if (reason == Reason::Registered) tournament->welcome(client, account.id);
}

void TourDesk::withdraw(const ConnectionID& client, AccountID account, std::uint32_t tourID) {
  Tournament* tournament = tournaments_.find(tourID);
  const auto reason = tournament != nullptr ? tournament->withdraw(account) : SrvTourUnregisterResult::Reason::Failed;
  outbox_.add<SrvTourUnregisterResult>(client, reason, tourID);
}

}  // namespace poker::holdem

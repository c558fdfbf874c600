#include <examples/holdem/server/lobby/WaitLists.h>

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace poker::holdem {

namespace {

constexpr Clock::time_point kNever = Clock::time_point::max();

/// Whether a table is of the kind that is wanted, whoever sits there now: it may come to fit.
bool couldFit(const WaitLists::Description& wanted, const RingTable& table) {
  const TableSettings& settings = table.settings();
  if (table.isClosed() || !settings.password.empty()) return false;
  if (wanted.game != GameType::None && wanted.game != GameType::TexasHoldem) return false;
  const RealMoneyType bet = settings.stakes.betOf(Street::River);
  if (bet < wanted.lowBet || (wanted.highBet != kZeroMoney && bet > wanted.highBet)) return false;
  // One seat at least must be left, so that there is one to be had.
  return wanted.minPlayers < static_cast<int>(settings.seats) &&
         (wanted.maxPlayers == 0 || wanted.maxPlayers >= std::max(wanted.minPlayers, 0));
}

bool fits(const WaitLists::Description& wanted, const RingTable& table) {
  const auto players = static_cast<int>(table.players());
  return couldFit(wanted, table) && players >= wanted.minPlayers &&
         (wanted.maxPlayers == 0 || players <= wanted.maxPlayers);
}

}  // namespace

WaitLists::WaitLists(asio::io_context& context, const Tables& tables, Outbox& outbox,
                     std::chrono::milliseconds inviteTime)
    : tables_(tables), outbox_(outbox), inviteTime_(inviteTime), timer_(context) {}

// What clients send

bool WaitLists::mayWait(const ConnectionID& client, const Account& account, std::uint32_t gameID) const {
  const auto isSame = [&](const auto& each) { return each.client == client; };
  if (std::any_of(invitations_.begin(), invitations_.end(), isSame)) return false;
  if (std::any_of(tables_.begin(), tables_.end(),
                  [&](const auto& table) { return table->seatOf(account.id).isValid(); })) {
    return false;
  }
  std::size_t waitsFor = 0;
  for (const auto& [number, queue] : queues_) {
    const bool waitsHere = std::any_of(queue.begin(), queue.end(), isSame);
    if (number == gameID && (waitsHere || queue.size() >= kLongestQueue)) return false;
    if (number != kAnyTable && waitsHere) ++waitsFor;
  }
  return gameID == kAnyTable || waitsFor < kMostTables;
}

void WaitLists::join(const ConnectionID& client, const Account& account, std::uint32_t gameID,
                     const Description& wanted) {
  queues_[gameID].push_back({client, account, ++joined_, wanted});
  ++changes_;
  for (const auto& table : tables_) {
    if (gameID == kAnyTable || gameID == table->settings().gameID) lookAgainAt(*table);
  }
  outbox_.add<SrvAddToWaitListOk>(client, gameID);
}

void WaitLists::waitForTable(const ConnectionID& client, const Account& account, std::uint32_t gameID) {
  const bool isOpen = std::any_of(tables_.begin(), tables_.end(), [&](const auto& table) {
    return table->settings().gameID == gameID && !table->isClosed() && table->settings().password.empty();
  });
  if (isOpen && mayWait(client, account, gameID)) {
    join(client, account, gameID, {});
  } else {
    outbox_.add<SrvAddToWaitListError>(client, gameID);
  }
}

void WaitLists::waitForAny(const ConnectionID& client, const Account& account, const Description& wanted) {
  const bool canBe = std::any_of(tables_.begin(), tables_.end(),
                                 [&](const auto& table) { return !wanted.realMoney && couldFit(wanted, *table); });
  if (canBe && mayWait(client, account, kAnyTable)) {
    join(client, account, kAnyTable, wanted);
  } else {
    outbox_.add<SrvAddToWaitListError>(client, kAnyTable);
  }
}

void WaitLists::stopWaiting(const ConnectionID& client, std::uint32_t gameID) {
  if (leaveQueue(gameID, [&](const Waiter& waiter) { return waiter.client == client; }) != 0) {
    outbox_.add<SrvRemoveFromWaitListOk>(client, gameID);
  } else {
    outbox_.add<SrvRemoveFromWaitListError>(client, gameID);
  }
}

void WaitLists::reject(const ConnectionID& client, std::uint32_t gameID, const std::string& reservation) {
  const Invitation* invitation = find(client, gameID, reservation);
  if (invitation == nullptr) {
    outbox_.add<SrvRemoveFromWaitListError>(client, gameID);
    return;
  }
  endInvitation(invitations_.begin() + (invitation - invitations_.data()));
  outbox_.add<SrvRemoveFromWaitListOk>(client, gameID);
}

const WaitLists::Invitation* WaitLists::find(const ConnectionID& client, std::uint32_t gameID,
                                             const std::string& reservation) const {
  const auto place = std::find_if(invitations_.begin(), invitations_.end(), [&](const Invitation& each) {
    return each.client == client && each.table->settings().gameID == gameID && each.id == reservation;
  });
  return place == invitations_.end() ? nullptr : &*place;
}

// Queues

/// @return how many were taken out
template <class Which>
std::size_t WaitLists::leaveQueue(std::uint32_t gameID, Which&& which) {
  const auto queue = queues_.find(gameID);
  if (queue == queues_.end()) return 0;
  const std::size_t left = std::erase_if(queue->second, which);
  if (left != 0) ++changes_;
  if (queue->second.empty()) queues_.erase(queue);
  return left;
}

void WaitLists::leaveQueues(const ConnectionID& client) {
  for (auto queue = queues_.begin(); queue != queues_.end();) {
    const std::uint32_t gameID = (queue++)->first;  // which may be gone after the next line
    leaveQueue(gameID, [&](const Waiter& waiter) { return waiter.client == client; });
  }
}

void WaitLists::forget(const ConnectionID& client) {
  leaveQueues(client);
  const auto invitation = std::find_if(invitations_.begin(), invitations_.end(),
                                       [&](const Invitation& each) { return each.client == client; });
  if (invitation != invitations_.end()) endInvitation(invitation);
}

std::size_t WaitLists::length(std::uint32_t gameID) const {
  const auto queue = queues_.find(gameID);
  return queue == queues_.end() ? 0 : queue->second.size();
}

// Seats

void WaitLists::noteChange(RingTable& table) {
  if (!queues_.empty() || !invitations_.empty()) lookAgainAt(table);
}

void WaitLists::lookAgainAt(RingTable& table) {
  if (std::find(due_.begin(), due_.end(), &table) == due_.end()) due_.push_back(&table);
}

void WaitLists::settle() {
  for (std::size_t i = 0; i < due_.size(); ++i) {
    if (due_[i]->isClosed()) {
      dismiss(*due_[i]);
      dismissTheHopeless();
    } else {
      serve(*due_[i]);
    }
  }
  due_.clear();
  armTimer();
}

void WaitLists::serve(RingTable& table) {
  for (SeatID seat = table.freeSeat(); seat.isValid(); seat = table.freeSeat()) {
    const Waiter* next = nextFor(table);
    if (next == nullptr) return;
    invite(table, seat, Waiter(*next));
  }
}

/// Null when nobody waits whom the table suits.
const WaitLists::Waiter* WaitLists::nextFor(RingTable& table) const {
  const Waiter* next = nullptr;
  if (const auto own = queues_.find(table.settings().gameID); own != queues_.end()) next = &own->second.front();
  if (const auto described = queues_.find(kAnyTable); described != queues_.end()) {
    const auto first = std::find_if(described->second.begin(), described->second.end(),
                                    [&](const Waiter& waiter) { return fits(waiter.wanted, table); });
    if (first != described->second.end() && (next == nullptr || first->joined < next->joined)) next = &*first;
  }
  return next;
}

void WaitLists::invite(RingTable& table, const SeatID& seat, const Waiter& waiter) {
  leaveQueues(waiter.client);
  table.hold(seat, waiter.account);
  std::string id = fmt::format("{:016x}{:016x}", random_(), random_());
  outbox_.add<SrvWaitList>(waiter.client, table.settings().gameID, id);
  invitations_.push_back({std::move(id), waiter.client, &table, seat, Clock::now() + inviteTime_});
}

void WaitLists::endInvitation(Invitations::iterator invitation) {
  RingTable& table = *invitation->table;
  const SeatID seat = invitation->seat;
  invitations_.erase(invitation);
  table.release(seat);
}

/// Nobody comes to sit at this table any more.
void WaitLists::dismiss(const RingTable& table) {
  const std::uint32_t gameID = table.settings().gameID;
  leaveQueue(gameID, [&](const Waiter& waiter) {
    outbox_.add<SrvRemoveFromWaitListOk>(waiter.client, gameID);
    return true;
  });
  for (std::size_t i = invitations_.size(); i-- != 0;) {
    if (invitations_[i].table != &table) continue;
    outbox_.add<SrvRemoveFromWaitListOk>(invitations_[i].client, gameID);
    endInvitation(invitations_.begin() + static_cast<std::ptrdiff_t>(i));
  }
}

/// Tables have closed: for some descriptions there may be none left.
void WaitLists::dismissTheHopeless() {
  leaveQueue(kAnyTable, [&](const Waiter& waiter) {
    const bool hasHope =
        std::any_of(tables_.begin(), tables_.end(), [&](const auto& table) { return couldFit(waiter.wanted, *table); });
    if (!hasHope) outbox_.add<SrvRemoveFromWaitListOk>(waiter.client, kAnyTable);
    return !hasHope;
  });
}

void WaitLists::armTimer() {
  const Clock::time_point next = invitations_.empty() ? kNever : invitations_.front().until;
  if (next == timerFor_) return;
  timerFor_ = next;
  timer_.cancel();
  if (next == kNever) return;
  timer_.expires_at(next);
  timer_.async_wait([this](const std::error_code& cancelled) {
    if (cancelled) return;
    timerFor_ = kNever;
    outbox_.run([this] {
      const Clock::time_point now = Clock::now();
      while (!invitations_.empty() && invitations_.front().until <= now) {
        outbox_.add<SrvRemoveFromWaitListOk>(invitations_.front().client,
                                             invitations_.front().table->settings().gameID);
        endInvitation(invitations_.begin());
      }
    });
  });
}

}  // namespace poker::holdem

#include <examples/holdem/server/House.h>

#include <examples/holdem/shared/LogLine.h>
#include <inspect/CommandText.h>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

namespace poker::holdem {

House::House(asio::io_context& context, HouseSettings settings, Connections& connections)
    : connections_(connections),
      log_(*Log::getLog("holdem.house", LogCategory::Network)),
      bank_(settings.bank),
      members_(bank_),
      gift_(settings.gift),
      outbox_(
          [this](const ConnectionID& to, std::span<const std::uint8_t> frame) { connections_.sendFrame(to, frame); }),
      highHands_(bank_, settings.highHand, outbox_,
                 [this](ConnectionsSet& all) {
                   for (const auto& table : tables_) all.insert(table->viewers());
                   lobby_.addViewers(all);
                 }),
      tables_(makeTables(context, std::move(settings.tables))),
      waitLists_(context, tables_, outbox_, settings.inviteTime),
      lobby_(context, tables_, waitLists_, outbox_,
             [this](std::uint32_t count) { return bank_.reserveVersions(count); }),
      tournaments_(context, settings.tournaments, settings.mostTournaments, bank_, members_, outbox_, *this),
      tourDesk_(context, tournaments_, outbox_, [this](std::uint32_t count) { return bank_.reserveVersions(count); }),
      lastHand_(bank_.lastHandNumber()),
      openTables_(tables_.size()),
      passwords_(context) {
  lobby_.setNews(SrvNewsType::Headlines, settings.news);
  outbox_.atEnd([this] { settle(); });
}

WaitLists::Tables House::makeTables(asio::io_context& context, std::vector<TableSettings> settings) {
  if (settings.size() > kMostTables) throw std::invalid_argument("a house has no room for so many tables");
  WaitLists::Tables tables;
  std::set<std::uint32_t> numbers{WaitLists::kAnyTable};
  for (TableSettings& table : settings) {
    if (!numbers.insert(table.gameID).second) throw std::invalid_argument("two tables have one number, or one has 0");
    tables.push_back(
        std::make_unique<RingTable>(context, std::move(table), bank_, outbox_, static_cast<RingTableHost&>(*this)));
  }
  return tables;
}

/// What follows from all that has happened in an event.
void House::settle() {
  tournaments_.settle();
  waitLists_.settle();
  lobby_.settle();
  const bool isAllOver = openTables_ == 0 && tournaments_.areOver() && (isClosing_ || !tables_.empty());
  if (isAllOver && onAllTablesClosed) std::exchange(onAllTablesClosed, nullptr)();
}

// Accounts

/// The client waits for a password's hash, if there is room for another one.
void House::await(const ConnectionID& client, bool isQueued) {
  if (isQueued) return connections_.hold(client);
  logLine(log_, 0, "too-many-wait conn={}", client.value());
  connections_.disconnect(client, SrvErrorDisconnected::DisconnectConn);
}

/// Calls `work(visitor)` for a client that has waited, if it is still there.
template <class Work>
void House::answerLate(const ConnectionID& client, Work&& work) {
  const auto visitor = visitors_.find(client.value());
  if (visitor == visitors_.end()) return;
  outbox_.run([&] { work(visitor->second); });
  connections_.proceed(client);
}

void House::openAccount(const ConnectionID& client, const CommonTypes::NewAccountInfo& form) {
  const bool isTooMany = ++visitors_[client.value()].accounts > kAccountTries;
  if (isTooMany || !isAcceptableName(form.userName) || !isAcceptablePassword(form.password)) {
    outbox_.add<SrvRegistrationFail>(client, CommonTypes::RegistrationFailed);
    return;
  }
  if (bank_.find(form.userName)) {
    outbox_.add<SrvRegistrationFail>(client, CommonTypes::UserNameTaken);
    return;
  }
  const auto open = [this, client, name = form.userName, email = form.email](const std::string& hash) {
    answerLate(client, [&](Visitor&) {
      if (!bank_.openHashedAccount(name, hash, email, gift_)) {
        outbox_.add<SrvRegistrationFail>(client, CommonTypes::UserNameTaken);
        return;
      }
      logLine(log_, 0, "account-opened conn={} name={}", client.value(), quoted(name));
      outbox_.add<SrvRegistrationOk>(client, CommonTypes::AccountCreated, name.c_str());
    });
  };
  await(client, passwords_.hash(client, form.password, bank_.passwordCost(), open));
}

void House::logOn(const ConnectionID& client, const std::string& name, const std::string& password) {
  Visitor& visitor = visitors_[client.value()];
  // Tells nothing by its haste: it depends on what was sent alone.
  if (!isAcceptableName(name) || !isAcceptablePassword(password)) return refuseLogon(client, visitor, name);
  const auto judge = [this, client, name](bool matches) {
    answerLate(client, [&](Visitor& waited) {
      std::optional<Account> account = matches ? bank_.find(name) : std::nullopt;
      if (!account) return refuseLogon(client, waited, name);
      admit(client, *std::move(account));
    });
  };
  await(client, passwords_.match(client, password, bank_.passwordHash(name), judge));
}

void House::refuseLogon(const ConnectionID& client, Visitor& visitor, const std::string& name) {
  logLine(log_, 0, "logon-refused conn={} name={}", client.value(), quoted(name));
  outbox_.add<SrvLogonError>(client, CommonTypes::BadUserOrPassword, "");
  if (++visitor.tries >= kLogonTries) connections_.disconnect(client, SrvErrorDisconnected::DisconnectConn);
}

void House::admit(const ConnectionID& client, Account account) {
  Visitor& visitor = visitors_[client.value()];
  visitor.tries = 0;
  const ConnectionID before = players_.bind(account.id, client);
  if (players_.find(account.id) != client) {
    // On a connection that is younger than this one.
    outbox_.add<SrvLogonError>(client, CommonTypes::AlreadyLoggedIn, "");
    return;
  }
  if (before.isValid()) {
    // It may be dead without having been noticed, and has nothing to say any more.
    leave(before);
    connections_.disconnect(before, SrvErrorDisconnected::Reconnect);
  }
  logLine(log_, 0, "logged-on conn={} name={}", client.value(), quoted(account.name));
  members_.noteVisit(account.id);
  connections_.setState(client, SessionState::LoggedOn);
  auto answer = make<SrvLogonOk>(account.name, "", false, RealMoneyAcc(), true);
  for (const auto& table : tables_) {
    if (const SeatID seat = table->seatOf(account.id); seat.isValid()) answer->prevSeatID(seat);
  }
  const AccountID player = account.id;
  visitor.account = std::move(account);
  lobby_.setPlayersLoggedOn(players_.size());
  ConnectionsSet to;
  to.insert(client);
  outbox_.put(std::move(answer), to);
  tournaments_.welcome(client, player);
}

void House::leave(const ConnectionID& client) {
  auto visitor = visitors_.extract(client.value());
  if (!visitor) return;
  passwords_.forget(client);
  if (visitor.mapped().account) players_.unbind(visitor.mapped().account->id, client);
  if (visitor.mapped().table != nullptr) visitor.mapped().table->leave(client);
  waitLists_.forget(client);
  lobby_.forget(client);
  tourDesk_.forget(client);
  lobby_.setPlayersLoggedOn(players_.size());
}

// Tables

/// Of a ring game or of a tournament; null when there is none of that number.
Table* House::findTable(std::uint32_t gameID) {
  for (const auto& table : tables_) {
    if (table->settings().gameID == gameID) return table.get();
  }
  Tournament* tournament = tournaments_.findByTable(gameID);
  return tournament != nullptr ? tournament->table(gameID) : nullptr;
}

void House::enterTable(const ConnectionID& client, std::uint32_t gameID, const std::string& password) {
  Visitor& visitor = visitors_[client.value()];
  Table* table = findTable(gameID);
  Tournament* former = tournaments_.find(gameID / Tournament::kTablesEach);
  if (visitor.account && table == nullptr && former != nullptr) {
    // It has just been broken: there may be another one.
    if (tourDesk_.mayLook(client, visitor.account->id, *former)) former->showSomeTable(client);
    return;
  }
  if (!visitor.account || table == nullptr) {
    connections_.disconnect(client, SrvErrorDisconnected::BadGameID);
    return;
  }
  const Tournament* tournament = tournaments_.findByTable(gameID);
  if (tournament != nullptr && !tourDesk_.mayLook(client, visitor.account->id, *tournament)) return;
  const std::string& wanted = table->settings().password;
  visitor.tries = 0;
  if (wanted.empty() || password == wanted || table->seatOf(visitor.account->id).isValid()) {
    enter(client, visitor, *table);
  } else {
    visitor.wanted = table;
    outbox_.add<SrvRequestPass>(client);
  }
}

void House::tellPassword(const ConnectionID& client, const std::string& password) {
  Visitor& visitor = visitors_[client.value()];
  if (visitor.wanted == nullptr) return;
  if (password == visitor.wanted->settings().password) {
    enter(client, visitor, *visitor.wanted);
    return;
  }
  const bool isLast = ++visitor.tries >= kLogonTries;
  if (isLast) visitor.wanted = nullptr;
  outbox_.add<SrvPasswordError>(client, SrvPasswordError::NotAuthorized, isLast);
}

void House::enter(const ConnectionID& client, Visitor& visitor, Table& table) {
  if (visitor.table != nullptr && visitor.table != &table) visitor.table->leave(client);
  visitor.table = &table;
  visitor.wanted = nullptr;
  visitor.tries = 0;
  table.enter(client, visitor.account->id);
}

void House::sitDown(const ConnectionID& client, const SeatID& seat, const RealMoneyType& money) {
  atTable(client, [&](Table& table, const Account& account) {
    // One seat in the house.
    for (const auto& other : tables_) {
      if (other.get() != &table && other->seatOf(account.id).isValid()) {
        outbox_.add<SrvSitError>(client, SrvErrorCode::NotAllowed, kZeroMoney);
        return;
      }
    }
    table.sitDown(client, account, seat, money);
  });
}

void House::acceptInvitation(const ConnectionID& client, std::uint32_t gameID, const std::string& reservation,
                             const RealMoneyType& money) {
  const auto visitor = visitors_.find(client.value());
  const WaitLists::Invitation* invitation = waitLists_.find(client, gameID, reservation);
  if (visitor == visitors_.end() || invitation == nullptr) {
    outbox_.add<SrvRemoveFromWaitListError>(client, gameID);
    return;
  }
  const SeatID seat = invitation->seat;
  enter(client, visitor->second, *invitation->table);
  sitDown(client, seat, money);
}

void House::onSeated(const ConnectionID& connection, bool seated) {
  if (seated) waitLists_.forget(connection);
  connections_.setState(connection, seated ? SessionState::Seated : SessionState::LoggedOn);
}

void House::bringTo(const ConnectionID& connection, Table& table) {
  const auto place = visitors_.find(connection.value());
  if (place == visitors_.end() || !place->second.account) return;
  Visitor& visitor = place->second;
  const bool sitsElsewhere =
      visitor.table != nullptr && visitor.table != &table && visitor.table->seatOf(visitor.account->id).isValid();
  if (!sitsElsewhere) enter(connection, visitor, table);
}

void House::finishHand(const FinishedHand& booking, const Hand& hand) {
  // One that drains opens again, and its promotion goes on.
  const bool isLast =
      std::all_of(tables_.begin(), tables_.end(), [](const auto& table) { return table->isPlayedOut(); });
  highHands_.finishHand(booking, hand, isLast);
}

void House::onHandOver(std::uint32_t gameID, std::uint64_t handsPlayed) {
  highHands_.tellNews();
  logLine(log_, 1, "hand-over game={} hands={}", gameID, handsPlayed);
}

void House::close(std::function<void()> closed) {
  onAllTablesClosed = std::move(closed);
  isClosing_ = true;
  outbox_.run([this] {
    for (const auto& table : tables_) table->close();
    tournaments_.close();
  });
}

bool House::report() {
  for (const auto& table : tables_) {
    const Dealer::Turns& turns = table->turns();
    logLine(log_, 0, "table game={} hands={} turns={} answered={} timed-out={} left={} in-advance={}",
            table->settings().gameID, table->handsPlayed(), turns.asked, turns.answered, turns.timedOut, turns.left,
            turns.inAdvance);
  }
  Log& log = *Log::getLog("holdem.bank", LogCategory::Network);
  std::size_t place = 0;
  for (const Standing& standing : bank_.standings()) {
    const RealMoneyType total = standing.balance + standing.stack;
    logLine(log, 0, "standing place={} name={} total={} won={} hands={} hands-won={}", ++place, quoted(standing.name),
            total.toString(), (total - standing.issued).toString(), standing.handsPlayed, standing.handsWon);
  }
  const Audit audit = bank_.audit();
  logLine(log, 0, "audit issued={} balances={} stacks={} rake={} tournaments={} difference={}", audit.issued.toString(),
          audit.balances.toString(), audit.stacks.toString(), audit.rake.toString(), audit.tournaments.toString(),
          audit.difference().toString());
  return audit.difference() == kZeroMoney;
}

}  // namespace poker::holdem

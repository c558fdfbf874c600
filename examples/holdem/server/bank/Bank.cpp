#include <examples/holdem/server/bank/Bank.h>

#include <examples/holdem/server/bank/Query.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <concepts>
#include <iterator>
#include <limits>
#include <system_error>
#include <utility>

namespace poker::holdem {
namespace {

/// Marks a database as a bank's, in its header.
constexpr int kApplicationID = 0x504B4231;
constexpr std::size_t kLongestEmail = 254;
/// What a new account begins with, among the gifts.
constexpr const char* kWelcome = "Welcome";

// Money is in hundredths.
constexpr const char* kMoneyAndHands = R"sql(
  CREATE TABLE account(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    name TEXT NOT NULL UNIQUE COLLATE NOCASE,
    password TEXT NOT NULL,
    email TEXT NOT NULL,
    issued INTEGER NOT NULL CHECK(issued >= 0),
    balance INTEGER NOT NULL CHECK(balance >= 0),
    hands_played INTEGER NOT NULL DEFAULT 0,
    hands_won INTEGER NOT NULL DEFAULT 0
  ) STRICT;
  CREATE TABLE seat(
    account INTEGER PRIMARY KEY REFERENCES account,
    game INTEGER NOT NULL,
    seat INTEGER NOT NULL,
    stack INTEGER NOT NULL CHECK(stack >= 0),
    UNIQUE(game, seat)
  ) STRICT;
  CREATE TABLE hand(
    number INTEGER PRIMARY KEY CHECK(number > 0),
    game INTEGER NOT NULL,
    rake INTEGER NOT NULL CHECK(rake >= 0),
    record TEXT NOT NULL
  ) STRICT;
  CREATE TABLE hand_player(
    account INTEGER NOT NULL REFERENCES account,
    hand INTEGER NOT NULL REFERENCES hand,
    PRIMARY KEY(account, hand)
  ) STRICT, WITHOUT ROWID;
  CREATE TABLE house(
    id INTEGER PRIMARY KEY CHECK(id = 1),
    rake INTEGER NOT NULL CHECK(rake >= 0)
  ) STRICT;
  INSERT INTO house VALUES(1, 0);
)sql";

// Times are in seconds since 1970; 0 is not known, as of accounts that were there before. Birth dates are as a client
// tells them: days since 1899-12-30, and 0 for none. A promotion without hands left is over.
constexpr const char* kMembersAndPromotions = R"sql(
  ALTER TABLE account ADD COLUMN opened INTEGER NOT NULL DEFAULT 0;
  ALTER TABLE account ADD COLUMN last_visit INTEGER NOT NULL DEFAULT 0;
  CREATE TABLE gift(
    id INTEGER PRIMARY KEY,
    account INTEGER NOT NULL REFERENCES account,
    amount INTEGER NOT NULL CHECK(amount > 0),
    reason TEXT NOT NULL
  ) STRICT;
  CREATE INDEX gift_of ON gift(account);
  INSERT INTO gift(account, amount, reason) SELECT id, issued, 'Welcome' FROM account WHERE issued > 0 ORDER BY id;
  CREATE TABLE profile(
    account INTEGER PRIMARY KEY REFERENCES account,
    real_name TEXT NOT NULL,
    city TEXT NOT NULL,
    country TEXT NOT NULL,
    occupation TEXT NOT NULL,
    hobbies TEXT NOT NULL,
    favourite_game TEXT NOT NULL,
    birth_date INTEGER NOT NULL,
    about_me TEXT NOT NULL
  ) STRICT;
  CREATE TABLE picture(
    account INTEGER PRIMARY KEY REFERENCES account,
    code TEXT NOT NULL,
    image BLOB NOT NULL
  ) STRICT;
  CREATE TABLE promotion(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    prize INTEGER NOT NULL CHECK(prize > 0),
    hands INTEGER NOT NULL CHECK(hands > 0),
    hands_left INTEGER NOT NULL CHECK(hands_left BETWEEN 0 AND hands),
    holder INTEGER REFERENCES account,
    hand INTEGER REFERENCES hand,
    cards TEXT
  ) STRICT;
)sql";

// The number that the lobby's next version gets.
constexpr const char* kLobbyVersions = R"sql(
  CREATE TABLE lobby(
    id INTEGER PRIMARY KEY CHECK(id = 1),
    next_version INTEGER NOT NULL
  ) STRICT;
  INSERT INTO lobby VALUES(1, strftime('%s', 'now'));
)sql";

// Where and when a hand was played, beside who played it: whoever looks for hands finds them in one walk through the
// account's own rows. Of hands before this step only the beginning is known.
constexpr const char* kTimesOfHands = R"sql(
  ALTER TABLE hand_player ADD COLUMN game INTEGER NOT NULL DEFAULT 0;
  ALTER TABLE hand_player ADD COLUMN began INTEGER NOT NULL DEFAULT 0;
  ALTER TABLE hand_player ADD COLUMN ended INTEGER NOT NULL DEFAULT 0;
  UPDATE hand_player SET (game, began) =
    (SELECT game, coalesce(CASE WHEN json_valid(record) THEN CAST(record ->> '$.began' AS INTEGER) END, 0)
     FROM hand WHERE number = hand);
  UPDATE hand_player SET ended = began;
)sql";

// What was paid for a tournament that is open is held for it; of one that was called off it has been paid back. Places and
// prizes are known when a tournament has finished. A hand of no tournament has the number 0 there.
constexpr const char* kTournaments = R"sql(
  CREATE TABLE tournament(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    name TEXT NOT NULL,
    state TEXT NOT NULL DEFAULT 'open' CHECK(state IN ('open', 'finished', 'called off')),
    added INTEGER NOT NULL DEFAULT 0 CHECK(added >= 0)
  ) STRICT;
  CREATE TABLE tournament_entry(
    tournament INTEGER NOT NULL REFERENCES tournament,
    account INTEGER NOT NULL REFERENCES account,
    fund INTEGER NOT NULL CHECK(fund >= 0),
    fee INTEGER NOT NULL CHECK(fee >= 0),
    place INTEGER CHECK(place > 0),
    prize INTEGER NOT NULL DEFAULT 0 CHECK(prize >= 0),
    PRIMARY KEY(tournament, account),
    UNIQUE(tournament, place)
  ) STRICT, WITHOUT ROWID;
  CREATE INDEX tournament_won ON tournament_entry(account) WHERE place = 1;
  ALTER TABLE hand_player ADD COLUMN tournament INTEGER NOT NULL DEFAULT 0;
)sql";

// Each step brings a bank to the next version, a new file to the newest. A step is never changed: there are banks that have
// made it.
constexpr const char* kSchemaSteps[] = {kMoneyAndHands, kMembersAndPromotions, kLobbyVersions, kTimesOfHands,
                                        kTournaments};
constexpr auto kSchemaVersion = static_cast<int>(std::size(kSchemaSteps));

/// The file holds password hashes and addresses: when it is new, it is made for its owner alone. SQLite gives its
/// companions the same rights.
void createFile(const std::string& file) {
  const int created = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (created >= 0) ::close(created);
}

/// @throws SQLite::Exception, BankError
SQLite::Database openDatabase(const std::string& file) {
  if (file.empty()) throw BankError("the bank's file has no name");
  if (file != ":memory:") createFile(file);
  // One thread at a time is the rule here, so SQLite needs no mutex.
  SQLite::Database database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX);
  // The lock comes with the first look into the file, and is held until the end.
  database.exec("PRAGMA locking_mode = EXCLUSIVE");

  const int application = database.execAndGet("PRAGMA application_id");
  int version = database.execAndGet("PRAGMA user_version");
  const bool isNew = database.execAndGet("SELECT count(*) FROM sqlite_schema").getInt() == 0;
  if (!isNew && application != kApplicationID)
    throw BankError(fmt::format("{} is the database of something else", file));
  if (!isNew && (version < 1 || version > kSchemaVersion)) {
    throw BankError(fmt::format("{} has version {} of the bank; this server knows versions up to {}", file, version,
                                kSchemaVersion));
  }

  // A commit is a write to the log, which the system has then, whatever becomes of this process. It reaches the disk with
  // the next checkpoint: until then a power failure takes back the end of the log, which is whole transactions.
  const std::string journal = database.execAndGet("PRAGMA journal_mode = WAL");
  if (journal != "wal" && journal != "memory") throw BankError(fmt::format("{} takes no write-ahead log", file));
  database.exec("PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON");

  SQLite::Transaction transaction(database, SQLite::TransactionBehavior::EXCLUSIVE);
  for (int step = isNew ? 0 : version; step < kSchemaVersion; ++step) database.exec(kSchemaSteps[step]);
  database.exec(fmt::format("PRAGMA application_id = {}; PRAGMA user_version = {}", kApplicationID, kSchemaVersion));
  transaction.commit();
  return database;
}

std::string whyNotOpened(const std::string& file, const SQLite::Exception& error) {
  switch (error.getErrorCode()) {
    case SQLITE_BUSY:
      return fmt::format("{} is in use by another server or tool", file);
    case SQLITE_NOTADB:
      return fmt::format("{} is not a database", file);
    default:
      return fmt::format("cannot open the bank's file {}: {}", file, error.what());
  }
}

[[noreturn]] void throwNoAccount(AccountID account) {
  throw BankError(fmt::format("there is no account {}", sqlValue(account)));
}

[[noreturn]] void throwHasNoSeat(AccountID account) {
  throw BankError(fmt::format("account {} has no seat", sqlValue(account)));
}

void checkAmount(RealMoneyType amount) {
  if (amount <= kZeroMoney) throw BankError(fmt::format("{} is no amount to bring to a table", amount.toString()));
}

/// Sums saturate beyond their range, and differ then: no stacks in the bank come near. What is below zero is left to the
/// checks of the schema.
void checkSums(const FinishedHand& hand) {
  RealMoneyType before;
  RealMoneyType after = hand.rake;
  for (const FinishedHand::Player& player : hand.players) {
    before += player.before;
    after += player.after;
  }
  if (before == after) return;
  throw BankError(fmt::format("hand {} of game {}: {} before, {} after with a rake of {}", hand.number, hand.game,
                              before.toString(), after.toString(), hand.rake.toString()));
}

/// Stretches of time, in which a moment is found fast however many they are.
class SpanSet {
 public:
  explicit SpanSet(std::vector<HandFilter::Span> spans) {
    std::sort(spans.begin(), spans.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const HandFilter::Span& span : spans) {
      if (span.last < span.first) continue;
      if (!spans_.empty() && span.first <= spans_.back().last) {
        spans_.back().last = std::max(spans_.back().last, span.last);
      } else {
        spans_.push_back(span);
      }
    }
  }

  /// Whether one of them has a moment from `first` to `last`.
  bool meets(HandFilter::Time first, HandFilter::Time last) const {
    const auto beginsBefore = [](HandFilter::Time time, const HandFilter::Span& span) { return time < span.first; };
    const auto after = std::upper_bound(spans_.begin(), spans_.end(), last, beginsBefore);
    return after != spans_.begin() && std::prev(after)->last >= first;
  }

 private:
  std::vector<HandFilter::Span> spans_;  // ascending, apart from each other
};

}  // namespace

/// The database and all statements on it.
struct Bank::Store {
  using Statement = SQLite::Statement;

  explicit Store(const std::string& file) : database(openDatabase(file)) {}

  /// Takes hold with commit(); otherwise nothing has been changed.
  SQLite::Transaction begin() { return SQLite::Transaction(database, SQLite::TransactionBehavior::IMMEDIATE); }

  void changeStackOf(const FinishedHand::Player& player, const FinishedHand& hand) {
    if (Query(changeStack, player.account, hand.game, player.before, player.after).run() == 0) {
      throw BankError(fmt::format("hand {} of game {}: account {} does not sit there with {}", hand.number, hand.game,
                                  sqlValue(player.account), player.before.toString()));
    }
  }
  /// Nothing of a tournament's stacks is kept here, so there is no more to check than this.
  void checkChipsOf(const FinishedHand::Player& player, const FinishedHand& hand) {
    if (player.before < kZeroMoney || player.after < kZeroMoney || hand.rake != kZeroMoney) {
      throw BankError(fmt::format("hand {} of tournament {}: a stack is below zero, or there is a rake", hand.number,
                                  hand.tournament));
    }
    if (!Query(hasEntered, hand.tournament, player.account).next()) {
      throw BankError(fmt::format("hand {} of tournament {}: account {} does not play there", hand.number,
                                  hand.tournament, sqlValue(player.account)));
    }
  }

  SQLite::Database database;

  Statement openAccount{database,
                        "INSERT INTO account(name, password, email, issued, balance, opened) "
                        "VALUES(?1, ?2, ?3, ?4, ?4, unixepoch())"};
  Statement findAccount{database, "SELECT id, name, password, balance FROM account WHERE name = ?1"};
  Statement balance{database, "SELECT balance FROM account WHERE id = ?1"};
  Statement withdraw{database, "UPDATE account SET balance = balance - ?2 WHERE id = ?1 AND balance >= ?2"};
  Statement deposit{database, "UPDATE account SET balance = balance + ?2 WHERE id = ?1"};

  Statement addGift{database, "INSERT INTO gift(account, amount, reason) VALUES(?1, ?2, ?3)"};
  Statement issue{database, "UPDATE account SET issued = issued + ?2, balance = balance + ?2 WHERE id = ?1"};
  Statement issued{database, "SELECT issued FROM account WHERE id = ?1"};
  Statement gifts{database, "SELECT amount, reason FROM gift WHERE account = ?1 ORDER BY id DESC LIMIT ?2"};

  Statement takeSeat{database, "INSERT INTO seat(account, game, seat, stack) VALUES(?1, ?2, ?3, ?4)"};
  Statement addToStack{database, "UPDATE seat SET stack = stack + ?2 WHERE account = ?1"};
  Statement stack{database, "SELECT stack FROM seat WHERE account = ?1"};
  Statement freeSeat{database, "DELETE FROM seat WHERE account = ?1"};
  Statement seated{
      database,
      "SELECT account, name, seat, stack FROM seat JOIN account ON id = account WHERE game = ?1 ORDER BY seat"};

  Statement addHand{database, "INSERT INTO hand(number, game, rake, record) VALUES(?1, ?2, ?3, ?4)"};
  Statement addHandOf{
      database,
      "INSERT INTO hand_player(account, hand, game, began, ended, tournament) VALUES(?1, ?2, ?3, ?4, ?5, ?6)"};
  Statement changeStack{database, "UPDATE seat SET stack = ?4 WHERE account = ?1 AND game = ?2 AND stack = ?3"};
  Statement hasEntered{database,
                       "SELECT 1 FROM tournament_entry JOIN tournament ON id = tournament"
                       " WHERE tournament = ?1 AND account = ?2 AND state = 'open'"};
  Statement countHand{database,
                      "UPDATE account SET hands_played = hands_played + 1, hands_won = hands_won + ?2 WHERE id = ?1"};
  Statement addRake{database, "UPDATE house SET rake = rake + ?1"};
  Statement reserveVersions{database, "UPDATE lobby SET next_version = next_version + ?1 RETURNING next_version - ?1"};
  Statement lastHand{database, "SELECT coalesce(max(number), 0) FROM hand"};
  Statement record{database, "SELECT record FROM hand WHERE number = ?1"};
  Statement recordOf{database,
                     "SELECT record FROM hand JOIN hand_player ON hand = number WHERE number = ?1 AND account = ?2"};
  Statement handsOf{database,
                    "SELECT hand, began, ended FROM hand_player AS own WHERE account = ?1"
                    " AND (?2 IS NULL OR game = ?2) AND (?3 IS NULL OR began >= ?3) AND (?4 IS NULL OR began <= ?4)"
                    " AND (?5 IS NULL OR EXISTS"
                    "  (SELECT 1 FROM hand_player AS other WHERE other.account = ?5 AND other.hand = own.hand))"
                    " AND (?6 IS NULL OR tournament = ?6)"
                    " ORDER BY hand DESC"};
  Statement handsPlayed{database, "SELECT hands_played FROM account WHERE id = ?1"};

  Statement standings{database,
                      "SELECT name, issued, balance, coalesce(stack, 0), hands_played, hands_won "
                      "FROM account LEFT JOIN seat ON account = id ORDER BY balance + coalesce(stack, 0) DESC, name"};
  Statement audit{database,
                  "SELECT coalesce(sum(issued), 0)"
                  "  + (SELECT coalesce(sum(added), 0) FROM tournament WHERE state <> 'called off'),"
                  " coalesce(sum(balance), 0), (SELECT coalesce(sum(stack), 0) FROM seat), (SELECT rake FROM house),"
                  " (SELECT coalesce(sum(added), 0) FROM tournament WHERE state = 'open')"
                  "  + (SELECT coalesce(sum(fund + fee), 0) FROM tournament_entry JOIN tournament ON id = tournament"
                  "     WHERE state = 'open')"
                  " FROM account"};
};

Bank::Bank(const BankSettings& settings) : passwordCost_(settings.passwordCost) {
  try {
    decoy_ = hashPassword("nobody has this one", passwordCost_);
    store_ = std::make_unique<Store>(settings.file);
  } catch (const SQLite::Exception& error) {
    throw BankError(whyNotOpened(settings.file, error));
  } catch (const std::system_error& error) {
    throw BankError(fmt::format("cannot hash passwords at cost {}: {}", passwordCost_, error.what()));
  }
}

Bank::~Bank() = default;

std::optional<AccountID> Bank::openAccount(const std::string& name, std::string_view password, const std::string& email,
                                           RealMoneyType gift) {
  if (!isAcceptableName(name) || !isAcceptablePassword(password)) throw BankError("no acceptable name and password");
  return openHashedAccount(name, hashPassword(password, passwordCost_), email, gift);
}

std::optional<AccountID> Bank::openHashedAccount(const std::string& name, const std::string& hash,
                                                 const std::string& email, RealMoneyType gift) {
  if (!isAcceptableName(name)) throw BankError("no acceptable name");
  if (gift < kZeroMoney || gift > kLargestMoney) throw BankError(fmt::format("{} is no gift", gift.toString()));
  return guarded("opening an account", [&]() -> std::optional<AccountID> {
    if (Query(store_->findAccount, name).next()) return std::nullopt;
    SQLite::Transaction transaction = store_->begin();
    Query(store_->openAccount, name, hash, email.size() > kLongestEmail ? std::string() : email, gift).run();
    const AccountID account{store_->database.getLastInsertRowid()};
    if (gift > kZeroMoney) Query(store_->addGift, account, gift, std::string(kWelcome)).run();
    transaction.commit();
    return account;
  });
}

std::optional<Account> Bank::find(const std::string& name) {
  return guarded("looking for an account", [&]() -> std::optional<Account> {
    Query account(store_->findAccount, name);
    if (!account.next()) return std::nullopt;
    return Account{account.account(0), account.text(1), account.money(3)};
  });
}

std::string Bank::passwordHash(const std::string& name) {
  return guarded("looking for an account", [&] {
    Query account(store_->findAccount, name);
    return account.next() ? account.text(2) : decoy_;
  });
}

std::optional<Account> Bank::logOn(const std::string& name, std::string_view password) {
  // Tells nothing by its haste: it depends on what was sent alone.
  if (!isAcceptableName(name) || !isAcceptablePassword(password)) return std::nullopt;
  const bool matches = passwordMatches(password, passwordHash(name));
  return matches ? find(name) : std::nullopt;
}

RealMoneyType Bank::balance(AccountID account) {
  return guarded("reading a balance", [&] {
    Query balance(store_->balance, account);
    if (!balance.next()) throwNoAccount(account);
    return balance.money(0);
  });
}

bool Bank::sitDown(AccountID account, std::uint32_t game, SeatID seat, RealMoneyType amount) {
  checkAmount(amount);
  if (!seat.isValid()) throw BankError("no seat to sit down on");
  return guarded("sitting down", [&] {
    SQLite::Transaction transaction = store_->begin();
    Query(store_->takeSeat, account, game, seat, amount).run();
    if (Query(store_->withdraw, account, amount).run() == 0) return false;
    transaction.commit();
    return true;
  });
}

bool Bank::addChips(AccountID account, RealMoneyType amount) {
  checkAmount(amount);
  return guarded("adding chips", [&] {
    SQLite::Transaction transaction = store_->begin();
    if (Query(store_->addToStack, account, amount).run() == 0) throwHasNoSeat(account);
    if (Query(store_->withdraw, account, amount).run() == 0) return false;
    transaction.commit();
    return true;
  });
}

RealMoneyType Bank::standUp(AccountID account) {
  return guarded("standing up", [&] {
    SQLite::Transaction transaction = store_->begin();
    RealMoneyType left;
    {
      Query stack(store_->stack, account);
      if (!stack.next()) throwHasNoSeat(account);
      left = stack.money(0);
    }
    Query(store_->freeSeat, account).run();
    Query(store_->deposit, account, left).run();
    transaction.commit();
    return left;
  });
}

void Bank::finishHand(const FinishedHand& hand, const std::function<void()>& alsoWrite) {
  checkSums(hand);
  guarded("finishing a hand", [&] {
    SQLite::Transaction transaction = store_->begin();
    Query(store_->addHand, hand.number, hand.game, hand.rake, hand.record).run();
    for (const FinishedHand::Player& player : hand.players) {
      if (hand.tournament == 0) {
        store_->changeStackOf(player, hand);
      } else {
        store_->checkChipsOf(player, hand);
      }
      Query(store_->countHand, player.account, player.won).run();
      Query(store_->addHandOf, player.account, hand.number, hand.game, hand.began, hand.ended, hand.tournament).run();
    }
    Query(store_->addRake, hand.rake).run();
    if (alsoWrite) alsoWrite();
    transaction.commit();
  });
}

void Bank::give(AccountID account, const Gift& gift) {
  guarded("giving to an account", [&] {
    const bool isInTransaction = sqlite3_get_autocommit(store_->database.getHandle()) == 0;
    if (!isInTransaction) throw BankError("a gift outside of a transaction");
    Query(store_->addGift, account, gift.amount, gift.reason).run();
    Query(store_->issue, account, gift.amount).run();
  });
}

Gifts Bank::gifts(AccountID account, std::size_t most) {
  return guarded("reading gifts", [&] {
    Query issued(store_->issued, account);
    if (!issued.next()) throwNoAccount(account);
    Gifts gifts{issued.money(0), {}};
    for (Query row(store_->gifts, account, most); row.next();) gifts.newest.push_back({row.money(0), row.text(1)});
    return gifts;
  });
}

SQLite::Database& Bank::database() { return store_->database; }

std::uint32_t Bank::reserveVersions(std::uint32_t count) {
  return guarded("reserving versions", [&] {
    SQLite::Transaction transaction = store_->begin();
    std::int64_t first = 0;
    {
      Query reserved(store_->reserveVersions, count);
      if (reserved.next()) first = reserved.number(0);
    }
    if (first <= 0 || first + count > std::numeric_limits<std::uint32_t>::max()) {
      throw BankError("the lobby's versions are used up");
    }
    transaction.commit();
    return static_cast<std::uint32_t>(first);
  });
}

std::uint64_t Bank::lastHandNumber() {
  return guarded("reading hands", [&] {
    Query last(store_->lastHand);
    last.next();
    return static_cast<std::uint64_t>(last.number(0));
  });
}

std::vector<SeatedPlayer> Bank::seated(std::uint32_t game) {
  return guarded("reading seats", [&] {
    std::vector<SeatedPlayer> players;
    for (Query row(store_->seated, game); row.next();) {
      players.push_back(
          {row.account(0), row.text(1), SeatID(static_cast<SeatID::value_type>(row.number(2))), row.money(3)});
    }
    return players;
  });
}

std::vector<Standing> Bank::standings() {
  return guarded("reading standings", [&] {
    std::vector<Standing> all;
    for (Query row(store_->standings); row.next();) {
      all.push_back({row.text(0), row.money(1), row.money(2), row.money(3), row.number(4), row.number(5)});
    }
    return all;
  });
}

Audit Bank::audit() {
  return guarded("adding up all money", [&] {
    Query sums(store_->audit);
    sums.next();
    return Audit{sums.money(0), sums.money(1), sums.money(2), sums.money(3), sums.money(4)};
  });
}

std::optional<std::string> Bank::handRecord(std::uint64_t number) {
  return guarded("reading hands", [&]() -> std::optional<std::string> {
    Query row(store_->record, number);
    if (!row.next()) return std::nullopt;
    return row.text(0);
  });
}

std::optional<std::string> Bank::handRecord(std::uint64_t number, AccountID player) {
  return guarded("reading hands", [&]() -> std::optional<std::string> {
    Query row(store_->recordOf, number, player);
    if (!row.next()) return std::nullopt;
    return row.text(0);
  });
}

std::vector<std::uint64_t> Bank::handsOf(AccountID account, std::size_t most, const HandFilter& filter) {
  std::optional<SpanSet> playedAt;
  if (filter.playedAt) playedAt.emplace(*filter.playedAt);
  const auto handsPlayed = [this](AccountID player) {
    Query row(store_->handsPlayed, player);
    return row.next() ? row.number(0) : 0;
  };
  return guarded("reading hands", [&] {
    std::vector<std::uint64_t> numbers;
    std::optional<AccountID> other;
    if (filter.opponent) {
      Query found(store_->findAccount, *filter.opponent);
      if (!found.next()) return numbers;
      other = found.account(0);
      // Whose hands we walk through and whose we look up makes no difference but in time.
      if (handsPlayed(*other) < handsPlayed(account)) std::swap(*other, account);
    }
    Query row(store_->handsOf, account, filter.game, filter.from, filter.to, other, filter.tournament);
    while (numbers.size() < most && row.next()) {
      if (playedAt && !playedAt->meets(row.time(1), row.time(2))) continue;
      numbers.push_back(static_cast<std::uint64_t>(row.number(0)));
    }
    return numbers;
  });
}

bool isAcceptableName(std::string_view name) {
  const auto isGood = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_' ||
           c == '.' || c == ' ';
  };
  return name.size() >= 2 && name.size() <= 20 && std::all_of(name.begin(), name.end(), isGood) &&
         name.front() != ' ' && name.back() != ' ';
}

}  // namespace poker::holdem

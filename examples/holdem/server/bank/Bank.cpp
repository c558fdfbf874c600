#include <examples/holdem/server/bank/Bank.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <concepts>
#include <system_error>

namespace poker::holdem {
namespace {

/// Marks a database as a bank's, in its header.
constexpr int kApplicationID = 0x504B4231;
constexpr int kSchemaVersion = 1;
constexpr std::size_t kLongestEmail = 254;

// Money is in hundredths.
constexpr const char* kSchema = R"sql(
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
  const int version = database.execAndGet("PRAGMA user_version");
  const bool isNew = database.execAndGet("SELECT count(*) FROM sqlite_schema").getInt() == 0;
  if (!isNew && application != kApplicationID)
    throw BankError(fmt::format("{} is the database of something else", file));
  if (!isNew && version != kSchemaVersion) {
    throw BankError(
        fmt::format("{} has version {} of the bank; this server knows version {}", file, version, kSchemaVersion));
  }

  // A commit is a write to the log, which the system has then, whatever becomes of this process. It reaches the disk with
  // the next checkpoint: until then a power failure takes back the end of the log, which is whole transactions.
  const std::string journal = database.execAndGet("PRAGMA journal_mode = WAL");
  if (journal != "wal" && journal != "memory") throw BankError(fmt::format("{} takes no write-ahead log", file));
  database.exec("PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON");

  SQLite::Transaction transaction(database, SQLite::TransactionBehavior::EXCLUSIVE);
  if (isNew) {
    database.exec(kSchema);
    database.exec(fmt::format("PRAGMA application_id = {}; PRAGMA user_version = {}", kApplicationID, kSchemaVersion));
  }
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

std::int64_t sqlValue(RealMoneyType amount) { return amount.hundredths(); }
std::int64_t sqlValue(SeatID seat) { return seat.value(); }
std::int64_t sqlValue(AccountID account) { return static_cast<std::int64_t>(account); }
std::int64_t sqlValue(std::integral auto number) { return static_cast<std::int64_t>(number); }
const std::string& sqlValue(const std::string& text) { return text; }

/// One use of a prepared statement, which is ready for the next one afterwards, also when this one failed.
class Query {
 public:
  template <class... Values>
  explicit Query(SQLite::Statement& statement, const Values&... values) : statement_(statement) {
    [[maybe_unused]] int position = 0;
    (statement_.bind(++position, sqlValue(values)), ...);
  }
  ~Query() { statement_.tryReset(); }
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  /// For what changes something.
  /// @return how many rows
  int run() { return statement_.exec(); }
  /// @return false when there are no more rows
  bool next() { return statement_.executeStep(); }

  std::int64_t number(int column) const { return statement_.getColumn(column).getInt64(); }
  RealMoneyType money(int column) const { return RealMoneyType::fromHundredths(number(column)); }
  AccountID account(int column) const { return AccountID{number(column)}; }
  std::string text(int column) const { return statement_.getColumn(column).getString(); }

 private:
  SQLite::Statement& statement_;
};

/// Calls `body`; an error of the database or of a password's hash becomes ours.
template <class Body>
auto guarded(const char* what, Body body) {
  const auto fail = [&](const std::exception& error) { return BankError(fmt::format("{}: {}", what, error.what())); };
  try {
    return body();
  } catch (const SQLite::Exception& error) {
    throw fail(error);
  } catch (const std::system_error& error) {
    throw fail(error);
  }
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

}  // namespace

/// The database and all statements on it.
struct Bank::Store {
  using Statement = SQLite::Statement;

  explicit Store(const std::string& file) : database(openDatabase(file)) {}

  /// Takes hold with commit(); otherwise nothing has been changed.
  SQLite::Transaction begin() { return SQLite::Transaction(database, SQLite::TransactionBehavior::IMMEDIATE); }

  SQLite::Database database;

  Statement openAccount{database,
                        "INSERT INTO account(name, password, email, issued, balance) VALUES(?1, ?2, ?3, ?4, ?4)"};
  Statement findAccount{database, "SELECT id, name, password, balance FROM account WHERE name = ?1"};
  Statement balance{database, "SELECT balance FROM account WHERE id = ?1"};
  Statement withdraw{database, "UPDATE account SET balance = balance - ?2 WHERE id = ?1 AND balance >= ?2"};
  Statement deposit{database, "UPDATE account SET balance = balance + ?2 WHERE id = ?1"};

  Statement takeSeat{database, "INSERT INTO seat(account, game, seat, stack) VALUES(?1, ?2, ?3, ?4)"};
  Statement addToStack{database, "UPDATE seat SET stack = stack + ?2 WHERE account = ?1"};
  Statement stack{database, "SELECT stack FROM seat WHERE account = ?1"};
  Statement freeSeat{database, "DELETE FROM seat WHERE account = ?1"};
  Statement seated{
      database,
      "SELECT account, name, seat, stack FROM seat JOIN account ON id = account WHERE game = ?1 ORDER BY seat"};

  Statement addHand{database, "INSERT INTO hand(number, game, rake, record) VALUES(?1, ?2, ?3, ?4)"};
  Statement addHandOf{database, "INSERT INTO hand_player(account, hand) VALUES(?1, ?2)"};
  Statement changeStack{database, "UPDATE seat SET stack = ?4 WHERE account = ?1 AND game = ?2 AND stack = ?3"};
  Statement countHand{database,
                      "UPDATE account SET hands_played = hands_played + 1, hands_won = hands_won + ?2 WHERE id = ?1"};
  Statement addRake{database, "UPDATE house SET rake = rake + ?1"};
  Statement lastHand{database, "SELECT coalesce(max(number), 0) FROM hand"};
  Statement record{database, "SELECT record FROM hand WHERE number = ?1"};
  Statement handsOf{database, "SELECT hand FROM hand_player WHERE account = ?1 ORDER BY hand DESC LIMIT ?2"};

  Statement standings{database,
                      "SELECT name, issued, balance, coalesce(stack, 0), hands_played, hands_won "
                      "FROM account LEFT JOIN seat ON account = id ORDER BY balance + coalesce(stack, 0) DESC, name"};
  Statement audit{database,
                  "SELECT coalesce(sum(issued), 0), coalesce(sum(balance), 0),"
                  " (SELECT coalesce(sum(stack), 0) FROM seat), (SELECT rake FROM house) FROM account"};
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
  if (gift < kZeroMoney || gift > kLargestMoney) throw BankError(fmt::format("{} is no gift", gift.toString()));
  return guarded("opening an account", [&]() -> std::optional<AccountID> {
    if (Query(store_->findAccount, name).next()) return std::nullopt;
    const std::string hash = hashPassword(password, passwordCost_);
    SQLite::Transaction transaction = store_->begin();
    Query(store_->openAccount, name, hash, email.size() > kLongestEmail ? std::string() : email, gift).run();
    transaction.commit();
    return AccountID{store_->database.getLastInsertRowid()};
  });
}

std::optional<Account> Bank::logOn(const std::string& name, std::string_view password) {
  // Tells nothing by its haste: it depends on what was sent alone.
  if (!isAcceptableName(name) || !isAcceptablePassword(password)) return std::nullopt;
  return guarded("logging on", [&]() -> std::optional<Account> {
    Query account(store_->findAccount, name);
    const bool exists = account.next();
    const bool matches = passwordMatches(password, exists ? account.text(2) : decoy_);
    if (!exists || !matches) return std::nullopt;
    return Account{account.account(0), account.text(1), account.money(3)};
  });
}

RealMoneyType Bank::balance(AccountID account) {
  return guarded("reading a balance", [&] {
    Query balance(store_->balance, account);
    if (!balance.next()) throw BankError(fmt::format("there is no account {}", sqlValue(account)));
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

void Bank::finishHand(const FinishedHand& hand) {
  checkSums(hand);
  guarded("finishing a hand", [&] {
    SQLite::Transaction transaction = store_->begin();
    Query(store_->addHand, hand.number, hand.game, hand.rake, hand.record).run();
    for (const FinishedHand::Player& player : hand.players) {
      if (Query(store_->changeStack, player.account, hand.game, player.before, player.after).run() == 0) {
        throw BankError(fmt::format("hand {} of game {}: account {} does not sit there with {}", hand.number, hand.game,
                                    sqlValue(player.account), player.before.toString()));
      }
      Query(store_->countHand, player.account, player.won).run();
      Query(store_->addHandOf, player.account, hand.number).run();
    }
    Query(store_->addRake, hand.rake).run();
    transaction.commit();
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
    return Audit{sums.money(0), sums.money(1), sums.money(2), sums.money(3)};
  });
}

std::optional<std::string> Bank::handRecord(std::uint64_t number) {
  return guarded("reading hands", [&]() -> std::optional<std::string> {
    Query row(store_->record, number);
    if (!row.next()) return std::nullopt;
    return row.text(0);
  });
}

std::vector<std::uint64_t> Bank::handsOf(AccountID account, std::size_t most) {
  return guarded("reading hands", [&] {
    std::vector<std::uint64_t> numbers;
    for (Query row(store_->handsOf, account, most); row.next();) {
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

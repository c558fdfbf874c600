#include <examples/holdem/server/bank/TourBank.h>

#include <LogUtil/Log.h>
#include <examples/holdem/server/bank/Query.h>
#include <examples/holdem/shared/LogLine.h>

#include <optional>
#include <type_traits>

namespace poker::holdem {
namespace {

const std::string kFinished = "finished";
const std::string kCalledOff = "called off";

void checkNotBelowZero(RealMoneyType amount) {
  if (amount < kZeroMoney) throw BankError(fmt::format("{} is nothing that can be paid", amount.toString()));
}

void checkAboveZero(RealMoneyType amount) {
  checkNotBelowZero(amount);
  if (amount == kZeroMoney) throw BankError("there is nothing to pay");
}

[[noreturn]] void throwIsNotInIt(std::uint32_t tournament, AccountID account) {
  throw BankError(fmt::format("account {} is not in tournament {}", sqlValue(account), tournament));
}

}  // namespace

struct TourBank::Store {
  using Statement = SQLite::Statement;

  explicit Store(SQLite::Database& own) : database(own) {}

  /// Calls `body` in a transaction, which takes hold when `body` returns, and not when it returns false.
  /// @throws BankError  the tournament is not open, and all that guarded() throws
  template <class Body>
  auto change(const char* what, std::uint32_t tournament, Body body) {
    return guarded(what, [&] {
      SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
      checkOpen(tournament);
      if constexpr (std::is_same_v<decltype(body()), bool>) {
        if (!body()) return false;
        transaction.commit();
        return true;
      } else {
        body();
        transaction.commit();
      }
    });
  }

  void checkOpen(std::uint32_t tournament) {
    if (!Query(isOpen, tournament).next()) throw BankError(fmt::format("tournament {} is not open", tournament));
  }
  RealMoneyType fundOf(std::uint32_t tournament) {
    Query sum(fund, tournament);
    return sum.next() ? sum.money(0) : kZeroMoney;
  }

  SQLite::Database& database;

  Statement open{database, "INSERT INTO tournament(name) VALUES(?1)"};
  Statement isOpen{database, "SELECT 1 FROM tournament WHERE id = ?1 AND state = 'open'"};
  Statement allOpen{database, "SELECT id FROM tournament WHERE state = 'open' ORDER BY id"};
  Statement close{database, "UPDATE tournament SET state = ?2 WHERE id = ?1"};
  Statement add{database, "UPDATE tournament SET added = added + ?2 WHERE id = ?1"};
  Statement fund{database,
                 "SELECT added + (SELECT coalesce(sum(fund), 0) FROM tournament_entry WHERE tournament = ?1)"
                 " FROM tournament WHERE id = ?1"};

  Statement takeFromAccount{database, "UPDATE account SET balance = balance - ?2 WHERE id = ?1 AND balance >= ?2"};
  Statement enter{database, "INSERT INTO tournament_entry(tournament, account, fund, fee) VALUES(?1, ?2, ?3, ?4)"};
  Statement buyChips{database, "UPDATE tournament_entry SET fund = fund + ?3 WHERE tournament = ?1 AND account = ?2"};
  Statement withdraw{database, "DELETE FROM tournament_entry WHERE tournament = ?1 AND account = ?2"};
  /// Of one account, or of all (NULL).
  Statement payBack{database,
                    "UPDATE account SET balance = balance + entry.fund + entry.fee FROM tournament_entry AS entry"
                    " WHERE entry.tournament = ?1 AND entry.account = account.id AND (?2 IS NULL OR account.id = ?2)"};

  Statement setResult{database,
                      "UPDATE tournament_entry SET place = ?3, prize = ?4"
                      " WHERE tournament = ?1 AND account = ?2 AND place IS NULL"};
  Statement withoutPlace{database,
                         "SELECT account FROM tournament_entry WHERE tournament = ?1 AND place IS NULL LIMIT 1"};
  Statement payPrizes{database,
                      "UPDATE account SET balance = balance + entry.prize FROM tournament_entry AS entry"
                      " WHERE entry.tournament = ?1 AND entry.account = account.id"};
  Statement bookFees{database,
                     "UPDATE house SET rake = rake +"
                     " (SELECT coalesce(sum(fee), 0) FROM tournament_entry WHERE tournament = ?1)"};
  Statement wins{database,
                 "SELECT (SELECT count(*) FROM tournament_entry WHERE account = id AND place = 1)"
                 " FROM account WHERE id = ?1"};
};

TourBank::TourBank(Bank& bank) {
  std::vector<std::uint32_t> unfinished;
  guarded("looking for tournaments", [&] {
    store_ = std::make_unique<Store>(bank.database());
    for (Query row(store_->allOpen); row.next();) unfinished.push_back(static_cast<std::uint32_t>(row.number(0)));
  });
  for (const std::uint32_t tournament : unfinished) {
    callOff(tournament);
    logLine(*Log::getLog("holdem.bank", LogCategory::Network), 0, "unfinished-tournament-called-off number={}",
            tournament);
  }
}

TourBank::~TourBank() = default;

std::uint32_t TourBank::open(const std::string& name) {
  return guarded("opening a tournament", [&] {
    Query(store_->open, name).run();
    return static_cast<std::uint32_t>(store_->database.getLastInsertRowid());
  });
}

bool TourBank::enter(std::uint32_t tournament, AccountID account, RealMoneyType buyIn, RealMoneyType fee) {
  checkNotBelowZero(buyIn);
  checkNotBelowZero(fee);
  return store_->change("entering a tournament", tournament, [&] {
    Query(store_->enter, tournament, account, buyIn, fee).run();
    return Query(store_->takeFromAccount, account, buyIn + fee).run() != 0;
  });
}

void TourBank::withdraw(std::uint32_t tournament, AccountID account) {
  store_->change("withdrawing from a tournament", tournament, [&] {
    Query(store_->payBack, tournament, std::optional(account)).run();
    if (Query(store_->withdraw, tournament, account).run() == 0) throwIsNotInIt(tournament, account);
  });
}

bool TourBank::buyChips(std::uint32_t tournament, AccountID account, RealMoneyType price) {
  checkNotBelowZero(price);
  return store_->change("buying a tournament's chips", tournament, [&] {
    if (Query(store_->buyChips, tournament, account, price).run() == 0) throwIsNotInIt(tournament, account);
    return Query(store_->takeFromAccount, account, price).run() != 0;
  });
}

void TourBank::addToFund(std::uint32_t tournament, RealMoneyType amount) {
  checkAboveZero(amount);
  store_->change("adding to a tournament's fund", tournament, [&] { Query(store_->add, tournament, amount).run(); });
}

RealMoneyType TourBank::fund(std::uint32_t tournament) {
  return guarded("reading a tournament's fund", [&] {
    store_->checkOpen(tournament);
    return store_->fundOf(tournament);
  });
}

void TourBank::finish(std::uint32_t tournament, const std::vector<Prize>& results) {
  const auto refuse = [&](const std::string& what) {
    throw BankError(fmt::format("results of tournament {}: {}", tournament, what));
  };
  RealMoneyType prizes;
  for (const Prize& result : results) {
    if (result.place > results.size()) refuse(fmt::format("{} is no place of {}", result.place, results.size()));
    prizes += result.amount;
  }
  store_->change("finishing a tournament", tournament, [&] {
    for (const auto& [account, place, amount] : results) {
      if (Query(store_->setResult, tournament, account, place, amount).run() == 0) {
        refuse(fmt::format("account {} is not in it, or named twice", sqlValue(account)));
      }
    }
    if (Query row(store_->withoutPlace, tournament); row.next()) {
      refuse(fmt::format("account {} has no place", sqlValue(row.account(0))));
    }
    const RealMoneyType fund = store_->fundOf(tournament);
    if (prizes != fund) refuse(fmt::format("prizes of {} for a fund of {}", prizes.toString(), fund.toString()));
    Query(store_->payPrizes, tournament).run();
    Query(store_->bookFees, tournament).run();
    Query(store_->close, tournament, kFinished).run();
  });
}

void TourBank::callOff(std::uint32_t tournament) {
  store_->change("calling a tournament off", tournament, [&] {
    Query(store_->payBack, tournament, std::optional<AccountID>()).run();
    Query(store_->close, tournament, kCalledOff).run();
  });
}

std::uint32_t TourBank::wins(AccountID account) {
  return guarded("counting won tournaments", [&] {
    Query count(store_->wins, account);
    if (!count.next()) throw BankError(fmt::format("there is no account {}", sqlValue(account)));
    return static_cast<std::uint32_t>(count.number(0));
  });
}

}  // namespace poker::holdem

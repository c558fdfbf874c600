#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/TypeWrapper.h>
#include <examples/holdem/server/bank/Password.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace SQLite {
class Database;
}

namespace poker::holdem {

/// The bank's own number of an account, never given twice.
enum class AccountID : std::int64_t {};

struct Account {
  AccountID id;
  std::string name;  ///< as it was registered, however it was typed now
  RealMoneyType balance;
};

struct SeatedPlayer {
  AccountID account;
  std::string name;
  SeatID seat;
  RealMoneyType stack;
};

/// All money there is.
struct Audit {
  RealMoneyType issued;  ///< what the house has given out, to players and to tournaments
  RealMoneyType balances;
  RealMoneyType stacks;
  RealMoneyType rake;         ///< with the fees of tournaments that have finished
  RealMoneyType tournaments;  ///< what is held for those that are not over: their funds, and the fees

  /// Zero, or chips came from nowhere (below zero) or are lost.
  RealMoneyType difference() const { return issued - balances - stacks - rake - tournaments; }
};

/// How a player stands.
struct Standing {
  std::string name;
  RealMoneyType issued;  ///< what the house gave
  RealMoneyType balance;
  RealMoneyType stack;
  std::int64_t handsPlayed;
  std::int64_t handsWon;

  friend bool operator==(const Standing&, const Standing&) = default;
};

/// Money that the house gave for nothing.
struct Gift {
  RealMoneyType amount;
  std::string reason;  ///< for the player
};

struct Gifts {
  RealMoneyType all;
  std::vector<Gift> newest;  ///< the newest first
};

/// What one hand changed.
struct FinishedHand {
  struct Player {
    AccountID account;
    RealMoneyType before;  ///< the stack when the hand began; of a tournament's hand chips, which are no money
    RealMoneyType after;
    bool won;
  };

  std::uint32_t game;
  std::uint64_t number;  ///< from 1; no two hands of any games have the same
  std::string record;    ///< JSON, for replays; the bank does not look into it
  std::vector<Player> players;
  RealMoneyType rake;
  std::chrono::sys_seconds began{};
  std::chrono::sys_seconds ended{};
  std::uint32_t tournament = 0;  ///< 0: a ring game
};

/// Which of the hands that an account played are wanted: those that meet every criterion that is set.
struct HandFilter {
  using Time = std::chrono::sys_seconds;
  struct Span {
    Time first;
    Time last;
  };

  std::optional<std::uint32_t> game;
  std::optional<std::uint32_t> tournament;    ///< 0: ring games alone
  std::optional<std::string> opponent;        ///< played the hand, too; the name, in upper or lower case
  std::optional<Time> from;                   ///< the hand began then or later
  std::optional<Time> to;                     ///< the hand began then or earlier
  std::optional<std::vector<Span>> playedAt;  ///< some moment of the hand lies in one of these
};

/// The database cannot be used, or the host asked for what cannot be. Nothing has changed.
class BankError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct BankSettings {
  std::string file;                       ///< ":memory:" for a bank that is gone when it ends
  unsigned passwordCost = kPasswordCost;  ///< of new accounts, as hashPassword() takes it
};

/// Accounts, chips on seats and finished hands, in an SQLite database that no other process can open meanwhile. An account
/// sits on one seat at most, whatever the game.
///
/// Each operation is one transaction: it has happened when it returns, and has not when it throws. What has happened
/// survives the end of the process, however sudden. A power failure may take the last operations back, all from some
/// moment on: the sums still hold.
///
/// Every operation throws BankError when the database fails (a full disk) or an account does not exist. One thread uses a bank
/// at a time.
class Bank {
 public:
  /// Creates the file, readable for its owner alone, if there is none.
  /// @throws BankError  the file cannot be opened, is used by another server, is no bank, or one of a newer server; the
  ///                    password cost is out of range
  explicit Bank(const BankSettings& settings);
  ~Bank();

  /// @param name, password  acceptable ones; the password is hashed here, see PasswordWorker for who may not wait for that
  /// @param email  only kept; not if it is longer than an address can be (254 bytes)
  /// @param gift  what the account begins with, 0 to kLargestMoney
  /// @return nothing when the name is taken; upper and lower case are the same
  std::optional<AccountID> openAccount(const std::string& name, std::string_view password, const std::string& email,
                                       RealMoneyType gift);
  /// @param hash  of an acceptable password, as hashPassword() makes it at passwordCost()
  std::optional<AccountID> openHashedAccount(const std::string& name, const std::string& hash, const std::string& email,
                                             RealMoneyType gift);
  unsigned passwordCost() const { return passwordCost_; }

  /// nothing when there is no such account; upper and lower case are the same
  std::optional<Account> find(const std::string& name);
  /// What passwordMatches() wants. For an unknown name there is one as well that no password matches, so that the work
  /// does not tell which names there are, as long as all accounts were opened at the same cost.
  std::string passwordHash(const std::string& name);
  /// All at once, for who may wait for the hash.
  /// @return nothing for an unknown name or a wrong password
  std::optional<Account> logOn(const std::string& name, std::string_view password);

  RealMoneyType balance(AccountID account);

  /// Moves `amount`, above zero, from the account to the seat.
  /// @return false when the account does not have it
  /// @throws BankError  the seat is taken, or the account has one already
  bool sitDown(AccountID account, std::uint32_t game, SeatID seat, RealMoneyType amount);

  /// The same for a seat that the account has.
  /// @throws BankError  the account has no seat
  bool addChips(AccountID account, RealMoneyType amount);

  /// Moves the stack back to the account and frees the seat.
  /// @return the stack
  /// @throws BankError  the account has no seat
  RealMoneyType standUp(AccountID account);

  /// A tournament's hand changes no stack here: its chips stand on no seat of the bank, and are not counted.
  /// @param alsoWrite  called in the same transaction when the hand is written, for what belongs to it: it happens with
  ///                   the hand or not at all. What it throws passes through
  /// @throws BankError  chips would appear or vanish, a stack is not what `before` says, a stack or the rake would be below
  ///                    zero, a player is named twice or does not sit in that game, or the number was used. Of a
  ///                    tournament's hand, too: it has a rake, a player has not entered, or the tournament is over
  void finishHand(const FinishedHand& hand, const std::function<void()>& alsoWrite = {});

  /// Adds money that the house gives to the account, and to what the house has given out. Is part of the caller's
  /// transaction.
  /// @param gift  above zero
  /// @throws BankError  there is no transaction
  void give(AccountID account, const Gift& gift);
  /// @param most  of the newest ones
  Gifts gifts(AccountID account, std::size_t most);

  /// Numbers that the lobby calls its versions by: they are given once, also after a restart.
  /// @return the first of `count` of them, above all earlier ones; a new bank begins at the seconds since 1970, so that it
  ///         does not begin where one before it did
  std::uint32_t reserveVersions(std::uint32_t count);

  /// Of all games; 0 before the first hand.
  std::uint64_t lastHandNumber();
  /// By seat.
  std::vector<SeatedPlayer> seated(std::uint32_t game);
  /// All players, the most money (balance and stack) first, then by name.
  std::vector<Standing> standings();
  Audit audit();
  /// @return nothing when there is no such hand
  std::optional<std::string> handRecord(std::uint64_t number);
  /// @return nothing when there is no such hand, or the account did not play it
  std::optional<std::string> handRecord(std::uint64_t number, AccountID player);
  /// The numbers of the hands that the account played, newest first, and no more than `most`.
  std::vector<std::uint64_t> handsOf(AccountID account, std::size_t most, const HandFilter& filter = {});

  /// For classes that keep in the same file what is no money; all tables are made by the bank. Lives as long as the bank.
  SQLite::Database& database();

 private:
  struct Store;

  std::unique_ptr<Store> store_;
  unsigned passwordCost_;
  std::string decoy_;  // a hash that stands in for that of an unknown name
};

/// 2 to 20 ASCII letters, digits, '-', '_', '.', and blanks inside.
bool isAcceptableName(std::string_view name);

}  // namespace poker::holdem

#pragma once

#include <examples/holdem/server/bank/Bank.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace poker::holdem {

/// What players have paid into tournaments, and what they win there, in the bank's database. What was paid for a tournament
/// that has not finished belongs to nobody until it has: the fund becomes prizes then and the fees the house's, or all of it
/// goes back. The bank's audit counts it.
///
/// Each operation is one transaction, as the bank's are, and throws BankError as they do, or for a tournament that does not
/// exist or is over. One thread uses it.
class TourBank {
 public:
  struct Prize {
    AccountID account;
    std::uint32_t place;   ///< from 1, the winner's
    RealMoneyType amount;  ///< may be zero
  };

  /// Calls off the tournaments that an earlier server has left unfinished, and logs them.
  /// @param bank  must outlive this object
  explicit TourBank(Bank& bank);
  ~TourBank();

  /// @return its number, which no other one ever has
  std::uint32_t open(const std::string& name);
  /// Takes buy-in and fee, either may be zero, from the account.
  /// @return false when the account does not have them
  /// @throws BankError  the account is in it already
  bool enter(std::uint32_t tournament, AccountID account, RealMoneyType buyIn, RealMoneyType fee);
  /// Pays everything back that the account has paid for it.
  /// @throws BankError  the account is not in it
  void withdraw(std::uint32_t tournament, AccountID account);
  /// A re-buy or an add-on: takes `price` from the account, into the fund.
  /// @return false when the account does not have it
  /// @throws BankError  the account is not in it
  bool buyChips(std::uint32_t tournament, AccountID account, RealMoneyType price);
  /// The house adds to the fund.
  /// @param amount  above zero; counts as given out by the house
  void addToFund(std::uint32_t tournament, RealMoneyType amount);
  /// Buy-ins, re-buys, add-ons and what the house has added, without the fees.
  RealMoneyType fund(std::uint32_t tournament);

  /// The tournament is over: pays the prizes, keeps the places, and books the fees as the house's.
  /// @param results  every account that is in it, the places from 1 on, each once; what they win is the fund together
  /// @throws BankError  they are not so; the tournament is open still
  void finish(std::uint32_t tournament, const std::vector<Prize>& results);
  /// It is called off: pays everything back, and takes back what the house added.
  void callOff(std::uint32_t tournament);
  /// How many tournaments the account has won (place 1).
  std::uint32_t wins(AccountID account);

 private:
  struct Store;

  std::unique_ptr<Store> store_;
};

}  // namespace poker::holdem

#pragma once

#include <CommandProcessor/types/PrizeFundInfo.h>
#include <CommandProcessor/types/PrizeSchemeInfoMap.h>
#include <examples/holdem/server/bank/TourBank.h>
#include <examples/holdem/server/tournament/TourSettings.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace poker::holdem {

/// What players pay into a tournament, and what prizes come of it. What the bank throws passes through.
class TourFund {
 public:
  /// All references must outlive the fund.
  TourFund(TourBank& bank, const TourSettings& settings, std::uint32_t tournament)
      : bank_(bank), settings_(settings), tournament_(tournament) {}

  /// Buy-in and fee.
  /// @return false when the account does not have them
  bool enter(AccountID account);
  /// Pays all of it back.
  void withdraw(AccountID account);
  /// @param count  at least one
  /// @return false when the account does not have the price
  bool buyRebuys(AccountID account, std::uint32_t count);
  bool buyAddOn(AccountID account);
  std::uint32_t rebuys() const { return rebuys_; }
  std::uint32_t addOns() const { return addOns_; }

  /// Nobody pays any more: the house adds what is missing of what it guaranteed.
  void makeFinal();
  bool isFinal() const { return isFinal_; }
  /// All is paid back, and what the house added is the house's again.
  void callOff();
  RealMoneyType total() const {
    return buyIns() + settings_.rebuyPrice * rebuys_ + settings_.addOnPrice * addOns_ + added_;
  }
  /// By place, the winner's first; as the fund stands now, at least what is guaranteed.
  std::vector<RealMoneyType> prizes() const;

  // For the lobby.

  PrizeSchemeInfoMap scheme() const;
  PrizeFundInfo info() const;

 private:
  RealMoneyType buyIns() const { return settings_.buyIn * entries_; }

  TourBank& bank_;
  const TourSettings& settings_;
  std::uint32_t tournament_;
  std::uint32_t entries_ = 0;
  std::uint32_t rebuys_ = 0;
  std::uint32_t addOns_ = 0;
  RealMoneyType added_;
  bool isFinal_ = false;
  bool isCalledOff_ = false;
};

}  // namespace poker::holdem

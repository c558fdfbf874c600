#include <examples/holdem/server/tournament/TourFund.h>

#include <examples/holdem/server/tournament/Prizes.h>

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace poker::holdem {

bool TourFund::enter(AccountID account) {
  if (!bank_.enter(tournament_, account, settings_.buyIn, settings_.fee)) return false;
  ++entries_;
  return true;
}

void TourFund::withdraw(AccountID account) {
  bank_.withdraw(tournament_, account);
  --entries_;
}

bool TourFund::buyRebuys(AccountID account, std::uint32_t count) {
  if (!bank_.buyChips(tournament_, account, settings_.rebuyPrice * count)) return false;
  rebuys_ += count;
  return true;
}

bool TourFund::buyAddOn(AccountID account) {
  if (!bank_.buyChips(tournament_, account, settings_.addOnPrice)) return false;
  ++addOns_;
  return true;
}

void TourFund::makeFinal() {
  if (std::exchange(isFinal_, true)) return;
  const RealMoneyType missing = settings_.guaranteed - total();
  if (missing <= kZeroMoney) return;
  bank_.addToFund(tournament_, missing);
  added_ = missing;
}

void TourFund::callOff() {
  bank_.callOff(tournament_);
  isCalledOff_ = true;
}

std::vector<RealMoneyType> TourFund::prizes() const {
  if (entries_ == 0 || isCalledOff_) return {};
  const std::vector<std::uint32_t> shares = settings_.shares.empty() ? usualShares(entries_) : settings_.shares;
  std::vector<RealMoneyType> prizes = prizesOf(std::max(total(), settings_.guaranteed), shares, entries_);
  std::erase(prizes, kZeroMoney);
  return prizes;
}

PrizeSchemeInfoMap TourFund::scheme() const {
  PrizeSchemeInfoMap scheme;
  scheme.setFinal(isFinal_);
  PrizeSchemeInfoRow row;
  for (const RealMoneyType& prize : prizes()) {
    ++row.place;
    row.amount = prize;
    scheme.add(row);
  }
  return scheme;
}

PrizeFundInfo TourFund::info() const {
  PrizeFundInfo info;
  if (isCalledOff_) return info;
  const auto tell = [&](PrizeFundText key, const RealMoneyType& amount) {
    if (amount != kZeroMoney) info.texts[key] = amount.toString();
  };
  info.texts[PrizeFundText::Total] = total().toString();
  tell(PrizeFundText::BuyIns, buyIns());
  tell(PrizeFundText::Rebuys, settings_.rebuyPrice * rebuys_);
  tell(PrizeFundText::AddOns, settings_.addOnPrice * addOns_);
  tell(PrizeFundText::Guaranteed, settings_.guaranteed);
  tell(PrizeFundText::Added, added_);
  const bool isGuaranteed = !isFinal_ && settings_.guaranteed > total();
  info.summary = isGuaranteed ? fmt::format("{} guaranteed", settings_.guaranteed.toString()) : total().toString();
  return info;
}

}  // namespace poker::holdem

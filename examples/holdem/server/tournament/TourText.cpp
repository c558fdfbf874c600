#include <examples/holdem/server/tournament/TourText.h>

#include <examples/holdem/server/KeyValueText.h>
#include <examples/holdem/server/bank/Bank.h>
#include <examples/holdem/server/tournament/BlindLevels.h>
#include <examples/holdem/shared/MoneyText.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

using Duration = TourSettings::Duration;

constexpr std::chrono::hours kDay{24};
constexpr std::uint32_t kMostLevelHands = 10'000;
constexpr std::uint32_t kMostRebuys = 1'000;
constexpr std::uint32_t kMostWins = 1'000'000;
constexpr std::uint32_t kMostLevels = 1'000;  // that a number of levels counts
constexpr std::uint32_t kWholeFund = 10'000;
const BlindLevel kUsualBlinds{RealMoneyType::fromUnits(10), RealMoneyType::fromUnits(20)};

std::uint64_t secondsOf(Duration time) {
  return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::seconds>(time).count());
}

/// The tournament, and what can be made out only when all is read.
struct Draft {
  TourSettings tour;
  std::optional<BlindLevel> firstBlinds;
  std::vector<BlindLevel> levels;
};

// Values

Duration timeFromText(std::string_view key, std::string_view value, Duration most) {
  double seconds = 0;
  const auto [end, failure] =
      std::from_chars(value.data(), value.data() + value.size(), seconds, std::chars_format::fixed);
  if (failure != std::errc() || end != value.data() + value.size() ||
      value.find_first_not_of("0123456789.") != value.npos || seconds > static_cast<double>(secondsOf(most))) {
    complain(fmt::format("{} takes seconds, 0 to {}, and not \"{}\"", key, secondsOf(most), value));
  }
  return Duration(std::llround(seconds * 1000));
}

RealMoneyType amountFromText(std::string_view key, std::string_view value) {
  const auto amount = moneyFromText(value);
  if (!amount) complain(fmt::format("{} takes an amount, and not \"{}\"", key, value));
  return *amount;
}

BlindLevel blindsFromText(std::string_view key, std::string_view value) {
  const auto [small, big] = amountsFromText(key, value, '/', "10/20");
  if (small <= kZeroMoney || small > big) complain("a small blind must lie between 0.01 and its big blind");
  return {small, big};
}

template <class Number>
Number countFromText(std::string_view key, std::string_view value, Number least, Number most) {
  return static_cast<Number>(numberFromText(key, value, least, most));
}

/// Calls `read` for each of the parts that semicolons stand between.
void forEachPart(std::string_view value, const std::function<void(std::string_view part)>& read) {
  for (;;) {
    const std::size_t end = value.find(';');
    read(value.substr(0, end));
    if (end == value.npos) break;
    value.remove_prefix(end + 1);
  }
}

/// "5/300" as "5" and "300".
std::pair<std::string_view, std::string_view> halves(std::string_view key, std::string_view value,
                                                     std::string_view form) {
  const std::size_t slash = value.find('/');
  if (slash == value.npos) complain(fmt::format("{} is written as {}, and not \"{}\"", key, form, value));
  return {value.substr(0, slash), value.substr(slash + 1)};
}

// Fields

using Key = std::string_view;
using Value = std::string_view;

void readAbout(Key, Value value, Draft& draft) {
  const auto isBad = [](char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\n') || c == 0x7F; };
  if (value.size() > kLongestTourText || std::any_of(value.begin(), value.end(), isBad)) {
    complain(
        fmt::format("a description has at most {} bytes, and no control characters but new lines", kLongestTourText));
  }
  draft.tour.description = value;
}

void readPlayers(Key key, Value value, Draft& draft) {
  const std::size_t dash = value.find('-');
  if (dash != value.npos)
    draft.tour.minPlayers = countFromText(key, value.substr(0, dash), std::size_t{2}, kMostTourPlayers);
  const Value most = dash == value.npos ? value : value.substr(dash + 1);
  draft.tour.maxPlayers = countFromText(key, most, std::size_t{2}, kMostTourPlayers);
}

void readInvited(Key key, Value value, Draft& draft) {
  draft.tour.invited.clear();
  forEachPart(value, [&](Value name) {
    if (!isAcceptableName(name)) complain(fmt::format("{} takes names, such as Ann;Ben: nobody is \"{}\"", key, name));
    draft.tour.invited.emplace_back(name);
  });
}

void readBuyIn(Key key, Value value, Draft& draft) {
  TourSettings& tour = draft.tour;
  if (value.find('+') == value.npos) {
    tour.buyIn = amountFromText(key, value);
    tour.fee = kZeroMoney;
  } else {
    std::tie(tour.buyIn, tour.fee) = amountsFromText(key, value, '+', "50+5");
  }
}

void readPrizes(Key key, Value value, Draft& draft) {
  draft.tour.shares.clear();
  forEachPart(value, [&](Value percent) {
    const auto share = moneyFromText(percent);  // has two decimals, as a share of ten thousand has
    if (!share || share->hundredths() == 0 || share->hundredths() > kWholeFund) {
      complain(fmt::format("{} takes per cents, such as 50;30;20, and not \"{}\"", key, percent));
    }
    draft.tour.shares.push_back(static_cast<std::uint32_t>(share->hundredths()));
  });
}

void readLevel(Key key, Value value, Draft& draft) {
  constexpr std::string_view kHands = "hands";
  TourSettings& tour = draft.tour;
  if (value.ends_with(kHands)) {
    value.remove_suffix(kHands.size());
    tour.switchType = TOUR_NAMES::SwitchType::ByHands;
    tour.levelLength = countFromText(key, value, 1u, kMostLevelHands);
  } else if (value.ends_with('s')) {
    value.remove_suffix(1);
    tour.switchType = TOUR_NAMES::SwitchType::ByTime;
    tour.levelLength = countFromText(key, value, 1u, static_cast<std::uint32_t>(secondsOf(kDay)));
  } else {
    complain(fmt::format("{} is a length, such as 300s or 12hands, and not \"{}\"", key, value));
  }
}

void readBreak(Key key, Value value, Draft& draft) {
  const auto [every, seconds] = halves(key, value, "LEVELS/SECONDS");
  draft.tour.breakEvery = countFromText(key, every, 0u, kMostLevels);
  draft.tour.breakTime = timeFromText(key, seconds, kDay);
}

void readRebuys(Key key, Value value, Draft& draft) {
  const auto [count, levels] = halves(key, value, "COUNT/LEVELS");
  draft.tour.rebuys = countFromText(key, count, 0u, kMostRebuys);
  draft.tour.rebuyLevels = countFromText(key, levels, 0u, kMostLevels);
}

using ReadField = std::function<void(Key, Value, Draft&)>;

template <class Time>
ReadField time(Time TourSettings::*field, Duration most = kDay) {
  return [=](Key key, Value value, Draft& draft) { draft.tour.*field = timeFromText(key, value, most); };
}

template <class Number>
ReadField count(Number TourSettings::*field, Number least, Number most) {
  return [=](Key key, Value value, Draft& draft) { draft.tour.*field = countFromText(key, value, least, most); };
}

ReadField amount(RealMoneyType TourSettings::*field) {
  return [=](Key key, Value value, Draft& draft) { draft.tour.*field = amountFromText(key, value); };
}

ReadField chipsAtPrice(RealMoneyType TourSettings::*price, RealMoneyType TourSettings::*chips) {
  return [=](Key key, Value value, Draft& draft) {
    std::tie(draft.tour.*price, draft.tour.*chips) = amountsFromText(key, value, ':', "10:1500");
  };
}

void readName(Key, Value value, Draft& draft) {
  draft.tour.name = nameFromText("a tournament", value, kLongestTableName);
}
void readGame(Key key, Value value, Draft& draft) { draft.tour.limit = limitFromText(key, value); }
void readPassword(Key, Value value, Draft& draft) { draft.tour.password = value; }
void readBlinds(Key key, Value value, Draft& draft) { draft.firstBlinds = blindsFromText(key, value); }
void readLevels(Key key, Value value, Draft& draft) {
  forEachPart(value, [&](Value level) { draft.levels.push_back(blindsFromText(key, level)); });
}

const std::map<Key, ReadField>& fields() {
  using Tour = TourSettings;
  static const std::map<Key, ReadField> all = {
      {"name", readName},
      {"about", readAbout},
      {"game", readGame},
      {"seats", count(&Tour::seats, std::size_t{2}, kMaxSeats)},
      {"players", readPlayers},
      {"password", readPassword},
      {"invited", readInvited},
      {"most-wins", count(&Tour::mostWins, 0u, kMostWins)},
      {"opens", time(&Tour::opensAfter, kLongestWait)},
      {"start", time(&Tour::startsAfter, kLongestWait)},
      {"start-with", count(&Tour::startWith, std::size_t{0}, kMostTourPlayers)},
      {"seating", time(&Tour::seatingTime)},
      {"buy-in", readBuyIn},
      {"guaranteed", amount(&Tour::guaranteed)},
      {"prizes", readPrizes},
      {"chips", amount(&Tour::chips)},
      {"blinds", readBlinds},
      {"levels", readLevels},
      {"level", readLevel},
      {"break", readBreak},
      {"rebuys", readRebuys},
      {"rebuy", chipsAtPrice(&Tour::rebuyPrice, &Tour::rebuyChips)},
      {"add-on", chipsAtPrice(&Tour::addOnPrice, &Tour::addOnChips)},
      {"reply-time", time(&Tour::replyTime)},
      {"hand-pause", time(&Tour::handPause)},
      {"rebuy-time", time(&Tour::rebuyTime)},
      {"absent-time", time(&Tour::absentTime)}};
  return all;
}

void readField(Key key, Value value, Draft& draft) {
  const auto field = fields().find(key);
  if (field == fields().end()) {
    std::vector<Key> keys;
    for (const auto& [known, read] : fields()) keys.push_back(known);
    complain(fmt::format("\"{}\" is none of {}", key, fmt::join(keys, ", ")));
  }
  field->second(key, value, draft);
}

/// The blinds of the draft, or the usual ones, as far as there can be chips for them.
void setLevels(Draft& draft) {
  if (draft.firstBlinds && !draft.levels.empty()) complain("blinds and levels both tell the first level");
  std::vector<BlindLevel>& levels = draft.tour.levels;
  if (!draft.levels.empty()) {
    levels = draft.levels;
  } else if (draft.firstBlinds || levels.empty()) {
    levels = usualLevels(draft.firstBlinds.value_or(kUsualBlinds));
    std::erase_if(levels, [](const BlindLevel& level) { return level.bigBlind > kLargestMoney; });
  }
}

// Contradictions

void checkStart(const TourSettings& tour) {
  if (tour.minPlayers < 2 || tour.minPlayers > tour.maxPlayers || tour.maxPlayers > kMostTourPlayers) {
    complain(fmt::format("from 2 to {} players may play, and the least must not be above the most", kMostTourPlayers));
  }
  if (!tour.startsAfter && tour.startWith == 0) complain("it starts never: it has neither start nor start-with");
  if (tour.startWith != 0 && (tour.startWith < tour.minPlayers || tour.startWith > tour.maxPlayers)) {
    complain("start-with must lie between the least and the most players");
  }
  if (!tour.invited.empty()) {
    const std::size_t needed = tour.startsAfter ? tour.minPlayers : tour.startWith;
    if (tour.invited.size() < needed) complain("fewer players are invited than it needs to start");
  }
  if (tour.startsAfter && *tour.startsAfter <= tour.opensAfter) complain("it must open before it starts");
}

void checkLevels(const TourSettings& tour) {
  if (tour.levels.empty()) complain("there are no levels");
  RealMoneyType small, big;
  for (const BlindLevel& level : tour.levels) {
    if (level.smallBlind <= kZeroMoney || level.smallBlind > level.bigBlind || level.bigBlind > kLargestMoney) {
      complain("a small blind must lie between 0.01 and its big blind");
    }
    if (level.smallBlind < small || level.bigBlind <= big) complain("each level must be higher than the one before it");
    std::tie(small, big) = std::tie(level.smallBlind, level.bigBlind);
  }
  if (tour.chips < tour.levels.front().bigBlind) complain("everybody must start with chips for the first big blind");
  if (tour.levelLength == 0) complain("a level's length must be above 0");
  if (tour.breakEvery != 0 && tour.breakTime.count() == 0) complain("a break's time must be above 0");
}

void checkExtraChips(const TourSettings& tour) {
  if (tour.rebuys != 0 && tour.rebuyChips <= kZeroMoney) complain("re-buys need chips: rebuy=PRICE:CHIPS");
  if (tour.rebuys == 0 && tour.rebuyChips > kZeroMoney) complain("nobody may re-buy: that needs rebuys=COUNT/LEVELS");
  if (tour.addOnChips == kZeroMoney && tour.addOnPrice > kZeroMoney) complain("an add-on needs chips");
  const bool hasAny = tour.rebuys != 0 || tour.addOnChips > kZeroMoney;
  if (hasAny && tour.rebuyLevels == 0) {
    complain("re-buys are for the first levels, an add-on comes after them: rebuys=COUNT/LEVELS must tell how many");
  }
  if (tour.rebuyLevels >= tour.levels.size() && hasAny) {
    complain(fmt::format("re-buys must end before the last of {} levels, which goes on", tour.levels.size()));
  }
  if (tour.rebuys != 0 && tour.rebuyTime.count() == 0) complain("the re-buy time must be above 0");
}

/// The winner has all chips in the end, and a fund is one amount.
void checkSums(const TourSettings& tour) {
  const auto most = [&](RealMoneyType first, RealMoneyType rebuy, RealMoneyType addOn) {
    const auto ofOne = static_cast<double>(first.hundredths()) +
                       static_cast<double>(rebuy.hundredths()) * static_cast<double>(tour.rebuys) +
                       static_cast<double>(addOn.hundredths());
    return ofOne * static_cast<double>(tour.maxPlayers);
  };
  const auto largest = static_cast<double>(kLargestMoney.hundredths());
  if (most(tour.chips, tour.rebuyChips, tour.addOnChips) > largest) {
    complain(fmt::format("all chips together must not be above {}", kLargestMoney.toString()));
  }
  if (most(tour.buyIn, tour.rebuyPrice, tour.addOnPrice) > largest || tour.guaranteed > kLargestMoney) {
    complain(fmt::format("the prize fund must not come above {}", kLargestMoney.toString()));
  }
  for (const RealMoneyType& price : {tour.buyIn, tour.fee, tour.guaranteed, tour.rebuyPrice, tour.addOnPrice}) {
    if (price < kZeroMoney) complain("an amount is below zero");
  }
}

void checkShares(const TourSettings& tour) {
  const std::vector<std::uint32_t>& shares = tour.shares;
  if (shares.empty()) return;
  if (std::accumulate(shares.begin(), shares.end(), std::uint64_t{0}) != kWholeFund) {
    complain("the prizes must be 100 per cent together");
  }
  if (!std::is_sorted(shares.rbegin(), shares.rend())) complain("a place must not win more than the one before it");
  if (shares.size() > tour.maxPlayers) complain("there are more prizes than players");
}

void checkTimes(const TourSettings& tour) {
  if (tour.replyTime.count() == 0) complain("the reply time must be above 0");
  for (const Duration& time :
       {tour.seatingTime, tour.breakTime, tour.replyTime, tour.handPause, tour.rebuyTime, tour.absentTime}) {
    if (time < Duration::zero() || time > kDay) complain("a time lies between 0 and a day");
  }
  for (const Duration& time : {tour.opensAfter, tour.startsAfter.value_or(Duration::zero())}) {
    if (time < Duration::zero() || time > kLongestWait) complain("it must open and start in the next 30 days");
  }
}

}  // namespace

TourSettings tourFromText(std::string_view text, const TourSettings& usual) {
  Draft draft{usual, {}, {}};
  try {
    forEachKeyValue(text, [&](Key key, Value value) { readField(key, value, draft); });
    setLevels(draft);
    checkTour(draft.tour);
  } catch (const std::invalid_argument& error) {
    throw std::invalid_argument(fmt::format("tournament \"{}\": {}", withoutPassword(text), error.what()));
  }
  return draft.tour;
}

void checkTour(const TourSettings& tour) {
  if (tour.seats < 2 || tour.seats > kMaxSeats) complain(fmt::format("a table has 2 to {} seats", kMaxSeats));
  checkStart(tour);
  checkLevels(tour);
  checkExtraChips(tour);
  checkSums(tour);
  checkShares(tour);
  checkTimes(tour);
}

}  // namespace poker::holdem

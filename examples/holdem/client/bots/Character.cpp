#include <examples/holdem/client/bots/Character.h>

#include <examples/holdem/game/Deck.h>
#include <examples/holdem/game/HandValue.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <random>
#include <stdexcept>
#include <utility>

namespace poker::holdem {

namespace {

using Random = std::mt19937_64;
using Percent = std::int64_t;

constexpr const char* kStyles[] = {"tight", "loose", "random"};

// What makes the difference between styles that look at their cards.
struct Temper {
  int playsFrom;     // points of a starting hand (startingPoints) to come in for one big blind
  int raisesFrom;    // ... and to raise
  Percent betsAt;    // how far the chance to win must be from an equal share towards certainty to bet ...
  Percent raisesAt;  // ... and to raise a bet
  Percent caution;   // how much better than the odds of the pot the chance must be to call
  Percent bluffs;    // of the turns that cost next to nothing
};
constexpr Temper kTight = {7, 10, 45, 75, 12, 4};
constexpr Temper kLoose = {4, 10, 38, 75, 6, 10};

constexpr int kShort = 8;  // big blinds: with fewer left in a tournament, a hand is played for all of them

constexpr Percent kSlowPlay = 15;  // of the turns with a hand to raise, those that only call

enum class Wish { GiveUp, StayIn, Raise };

bool happens(Random& random, Percent percent) { return drawBelow(random, 100) < static_cast<std::uint64_t>(percent); }

// The options of a turn, and how a wish becomes one of them.
class Turn {
 public:
  explicit Turn(const Situation& situation) : situation_(situation) {}

  bool offers(UserAction action) const {
    return situation_.options != nullptr && situation_.options->options().contains(action);
  }

  // What it costs to stay in: nothing when there is a check.
  RealMoneyType price() const { return exactly(toStayIn()).amount; }

  // The first of these that is open; for a turn of another kind, its first option.
  UserAction toStayIn() const { return firstOf({UserAction::Check, UserAction::Call, UserAction::AllIn}); }
  UserAction toGiveUp() const { return firstOf({UserAction::Check, UserAction::Fold}); }

  // The action at its least amount.
  Decision exactly(UserAction action) const { return {action, range(action).first}; }

  // The action for an amount near this one: rounded down to half big blinds, and brought into the range.
  Decision about(UserAction action, RealMoneyType amount) const {
    const auto [least, most] = range(action);
    const std::int64_t unit = std::max<std::int64_t>(situation_.bigBlind.half().hundredths(), 1);
    const RealMoneyType round = RealMoneyType::fromHundredths(amount.hundredths() / unit * unit);
    return {action, std::max(least, std::min(round, most))};
  }

  // Adds about this much. Commits the whole stack rather than leave a little of it.
  Decision raise(RealMoneyType amount) const {
    const RealMoneyType mostOfStack = situation_.stack.scaled(2, 3);
    if (offers(UserAction::AllIn) && amount >= mostOfStack) return exactly(UserAction::AllIn);
    for (const UserAction action : {UserAction::Raise, UserAction::Bet}) {
      if (offers(action)) return about(action, amount);
    }
    return exactly(toStayIn());
  }

  std::pair<RealMoneyType, RealMoneyType> range(UserAction action) const {
    std::pair<RealMoneyType, RealMoneyType> range;
    if (situation_.options != nullptr) situation_.options->getOptionChips(action, range.first, range.second);
    return range;
  }

 private:
  UserAction firstOf(std::initializer_list<UserAction> actions) const {
    for (const UserAction action : actions) {
      if (offers(action)) return action;
    }
    const bool nothing = situation_.options == nullptr || situation_.options->empty();
    return nothing ? UserAction::NoAction : situation_.options->options().begin()->first;
  }

  const Situation& situation_;
};

// The worth of two cards by a well-known rule of thumb: from -1 (seven and two) to 20 (two aces).
int startingPoints(const Card& a, const Card& b) {
  const auto height = [](const Card& card) {
    return static_cast<int>(card.rank() == Card::Rank::LowAce ? Card::Rank::Ace : card.rank());
  };
  const auto [low, high] = std::minmax({height(a), height(b)});
  // In halves of points, by the higher card.
  constexpr int kHalves[] = {0, 0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12, 14, 16, 20};
  int halves = kHalves[high];
  const int gap = high - low - 1;
  if (gap < 0) {
    halves = std::max(2 * halves, 10);
  } else {
    if (a.suit() == b.suit()) halves += 4;
    halves -= gap < 3 ? 2 * gap : gap == 3 ? 8 : 10;
    if (gap <= 1 && high < static_cast<int>(Card::Rank::Queen)) halves += 2;
  }
  return (halves + 3) / 2 - 1;  // halves up, below zero too
}

// How likely the cards are to win against as many random hands, by trying. Split pots count half.
Percent chanceToWin(const Situation& situation, Random& random) {
  constexpr unsigned kTrials = 100;
  constexpr std::size_t kBoard = 5;
  constexpr unsigned kMostOpponents = 9;

  std::array<Card, Deck::kCards> unseen;
  std::size_t count = 0;
  for (Deck deck; deck.remaining() > 0;) {
    const Card card = deck.deal();
    const auto isCard = [&card](const Card& seen) { return seen.suit() == card.suit() && seen.rank() == card.rank(); };
    if (std::ranges::none_of(situation.ownCards, isCard) && std::ranges::none_of(situation.board, isCard)) {
      unseen[count++] = card;
    }
  }
  std::array<Card, kBoard> board;
  std::ranges::copy(situation.board, board.begin());
  const unsigned opponents = std::clamp(situation.opponents, 1u, kMostOpponents);

  unsigned halfWins = 0;
  for (unsigned trial = 0; trial < kTrials; ++trial) {
    std::size_t drawn = 0;
    const auto draw = [&] {
      std::swap(unseen[drawn], unseen[drawn + static_cast<std::size_t>(drawBelow(random, count - drawn))]);
      return unseen[drawn++];
    };
    std::generate(board.begin() + std::ssize(situation.board), board.end(), draw);
    const HandValue own = HandValue::best(situation.ownCards, board);
    HandValue best;
    for (unsigned opponent = 0; opponent < opponents; ++opponent) {
      const std::array<Card, 2> cards = {draw(), draw()};
      best = std::max(best, HandValue::best(cards, board));
    }
    halfWins += own > best ? 2 : own == best ? 1 : 0;
  }
  return halfWins * 100 / (2 * kTrials);
}

Wish wishBeforeFlop(const Situation& situation, RealMoneyType price, const Temper& temper) {
  // Every doubling of the price asks for a better hand; there is none better than aces.
  int surcharge = 0;
  const std::int64_t blind = std::max<std::int64_t>(situation.bigBlind.hundredths(), 1);
  for (std::int64_t blinds = price.hundredths() / blind; blinds >= 2; blinds /= 2) ++surcharge;
  const int points = startingPoints(situation.ownCards[0], situation.ownCards[1]);
  constexpr int kAces = 20;
  if (points >= std::min(temper.raisesFrom + surcharge, kAces)) return Wish::Raise;
  return points >= std::min(temper.playsFrom + surcharge, kAces) ? Wish::StayIn : Wish::GiveUp;
}

bool isShort(const Situation& situation) {
  return situation.isTournament && situation.board.size() < 3 && situation.stack < situation.bigBlind * kShort;
}

/// Whether the cards are good enough to go all-in with a short stack. The shorter it is, the more will do.
bool pushes(const Situation& situation, RealMoneyType price, const Temper& temper) {
  constexpr int kDearer = 4;  // points, when somebody has raised
  const int points = startingPoints(situation.ownCards[0], situation.ownCards[1]);
  const int needed = temper.playsFrom + (price > situation.bigBlind ? kDearer : 0);
  return situation.bigBlind.scaled(std::int64_t{kShort} * points, 1) >= situation.stack.scaled(needed, 1);
}

Wish wishAfterFlop(const Situation& situation, RealMoneyType price, const Temper& temper, Random& random) {
  const Percent chance = chanceToWin(situation, random);
  const Percent equalShare = 100 / (std::int64_t{situation.opponents} + 1);
  const Percent towards = price > kZeroMoney ? temper.raisesAt : temper.betsAt;
  if (chance >= equalShare + (100 - equalShare) * towards / 100) return Wish::Raise;
  const RealMoneyType atStake = std::max(situation.pot + price, RealMoneyType::fromHundredths(1));
  const Percent odds = price.scaled(100, atStake.hundredths()).hundredths();
  return chance >= odds + temper.caution ? Wish::StayIn : Wish::GiveUp;
}

Decision decideByCards(const Situation& situation, const Turn& turn, const Temper& temper, Random& random) {
  const auto hasFace = [](const Card& card) {
    return card.rank() >= Card::Rank::LowAce && card.rank() <= Card::Rank::Ace;
  };
  if (situation.ownCards.size() != 2 || !std::ranges::all_of(situation.ownCards, hasFace)) {
    return turn.exactly(turn.toGiveUp());
  }
  if (situation.board.size() > 5) throw std::invalid_argument("more than five cards on the board");
  const RealMoneyType price = turn.price();
  if (isShort(situation)) {
    return pushes(situation, price, temper) ? turn.raise(situation.stack) : turn.exactly(turn.toGiveUp());
  }
  Wish wish = situation.board.size() < 3 ? wishBeforeFlop(situation, price, temper)
                                         : wishAfterFlop(situation, price, temper, random);
  if (wish == Wish::Raise && happens(random, kSlowPlay)) {
    wish = Wish::StayIn;
  } else if (price <= situation.bigBlind && happens(random, temper.bluffs)) {
    wish = Wish::Raise;
  }
  if (wish == Wish::GiveUp) return turn.exactly(turn.toGiveUp());
  if (wish == Wish::StayIn) return turn.exactly(turn.toStayIn());
  // Half the pot to all of it, as it is after the call.
  const auto share = 50 + static_cast<Percent>(drawBelow(random, 51));
  return turn.raise(price + (situation.pot + price).scaled(share, 100));
}

Decision decideAtRandom(const Situation& situation, const Turn& turn, Random& random) {
  struct Weighted {
    UserAction action;
    unsigned weight;
  };
  if (isShort(situation)) {
    return drawBelow(random, 3) == 0 ? turn.raise(situation.stack) : turn.exactly(turn.toGiveUp());
  }
  const bool free = turn.offers(UserAction::Check);
  const bool dear = turn.price() > situation.stack / 8;
  const unsigned folds = free ? 0 : dear ? 250 : 60;
  const unsigned goesAllIn = free || turn.offers(UserAction::Call) ? 1 : 60;  // where that is the call
  const Weighted choices[] = {{UserAction::Check, 60}, {UserAction::Bet, 25},     {UserAction::Call, 60},
                              {UserAction::Raise, 14}, {UserAction::Fold, folds}, {UserAction::AllIn, goesAllIn}};
  unsigned sum = 0;
  for (const auto& [action, weight] : choices) sum += turn.offers(action) ? weight : 0;
  if (sum == 0) return turn.exactly(turn.toGiveUp());
  auto drawn = drawBelow(random, sum);
  for (const auto& [action, weight] : choices) {
    if (!turn.offers(action)) continue;
    if (drawn >= weight) {
      drawn -= weight;
      continue;
    }
    // Anywhere in the range, mostly low in it: otherwise every second raise would be for half the stack.
    auto [least, amount] = turn.range(action);
    for (int times = 0; times < 3; ++times) {
      amount = least + (amount - least).scaled(static_cast<std::int64_t>(drawBelow(random, 1001)), 1000);
    }
    return turn.about(action, amount);
  }
  return {};
}

}  // namespace

const char* toText(Style style) { return kStyles[static_cast<std::size_t>(style)]; }

std::optional<Style> styleFromText(std::string_view text) {
  const auto place = std::ranges::find(kStyles, text);
  if (place == std::end(kStyles)) return std::nullopt;
  return static_cast<Style>(place - std::begin(kStyles));
}

Decision Character::decide(const Situation& situation) const {
  const auto low = [](std::uint64_t bits) { return static_cast<std::uint32_t>(bits); };
  const auto high = [](std::uint64_t bits) { return static_cast<std::uint32_t>(bits >> 32); };
  std::seed_seq seed{low(seed_), high(seed_), low(situation.hand), high(situation.hand), situation.decision};
  Random random(seed);
  const Turn turn(situation);
  switch (style_) {
    case Style::Tight:
      return decideByCards(situation, turn, kTight, random);
    case Style::Loose:
      return decideByCards(situation, turn, kLoose, random);
    case Style::Random:
      break;
  }
  return decideAtRandom(situation, turn, random);
}

}  // namespace poker::holdem

#include "Guest.h"

#include <examples/holdem/game/CardText.h>
#include <examples/holdem/server/bank/TourBank.h>
#include <examples/holdem/server/history/HandHistory.h>
#include <examples/holdem/server/history/RecordStory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <random>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;
using Json = nlohmann::ordered_json;
using Numbers = std::vector<std::uint32_t>;
using test::Place;
using testing::HasSubstr;
using testing::Not;

constexpr RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }
std::vector<Card> cardsFrom(std::string_view text) { return cardsFromText(text).value(); }

/// Plays a hand by the rules alone, and records it.
class Played final : private HandEvents {
 public:
  struct Player {
    std::uint8_t seat;
    const char* name;
    std::int64_t stack;
    const char* cards;
    bool postsBig = false;
    bool postsSmall = false;
  };

  TableSettings table;
  SeatID button, smallBlind, bigBlind;
  std::set<SeatID> showsAnywayAt;

  /// @param players  from the left of the button
  /// @param moves  in turn: code and hundredths
  std::string record(const std::vector<Player>& players, const char* board,
                     const std::vector<std::pair<UserAction, std::int64_t>>& moves) {
    HandPlan plan;
    plan.button = button;
    plan.smallBlind = smallBlind;
    plan.bigBlind = bigBlind;
    for (const Player& player : players) {
      plan.seats[plan.size++] = {player.seat, player.postsBig, player.postsSmall};
      Seat& seat = seats_.take(player.seat);
      seat.name = player.name;
      seat.stack = cents(player.stack);
    }
    std::vector<Card> cards;
    for (std::size_t i : {0u, 1u}) {
      for (const Player& player : players) cards.push_back(cardsFrom(player.cards).at(i));
    }
    for (const Card& card : cardsFrom(board)) cards.push_back(card);
    Deck deck;
    deck.stack(cards);
    record_.begin(17);
    hand_.begin(
        table.stakes, plan, [&](const SeatID& seat) { return seats_.find(seat)->stack; }, deck);
    for (const auto& [action, amount] : moves) EXPECT_TRUE(hand_.act(action, cents(amount))) << actionBit(action);
    EXPECT_TRUE(hand_.isOver());
    record_.end();
    Json json = Json::parse(record_.toJson(table, hand_, seats_));
    json["began"] = 1'795'000'000;
    return json.dump();
  }

 private:
  void onBlind(const HandPlayer& player, UserAction blind, const RealMoneyType& amount) override {
    record_.add(Street::PreFlop, player.seat, blind, amount, player.dead);
  }
  void onDealt() override {}
  void onAction(const HandPlayer& player, UserAction action, const RealMoneyType& amount) override {
    record_.add(hand_.street(), player.seat, action, amount);
  }
  void onUncalled(const HandPlayer& player, const RealMoneyType& amount) override {
    record_.add(hand_.street(), player.seat, UserAction::NoAction, amount);
  }
  void onRoundOver(Street) override {}
  void onBoard(Street, std::span<const Card>) override {}
  void onTurnedUp(const HandPlayer&) override {}
  bool showsAnyway(const HandPlayer& player) override { return showsAnywayAt.contains(player.seat); }
  void onOver() override {}

  Seats seats_;
  HandRecord record_;
  Hand hand_{*this};
};

constexpr auto kFold = UserAction::Fold, kCheck = UserAction::Check, kCall = UserAction::Call, kBet = UserAction::Bet,
               kRaise = UserAction::Raise, kAllIn = UserAction::AllIn;

/// The record as the first version of the bank kept it.
std::string asInVersionOne(const std::string& record) {
  Json json = Json::parse(record);
  for (const char* added : {"seats", "ended", "finalists", "wins"}) json.erase(added);
  for (Json& action : json["actions"]) action.erase("dead");
  return json.dump();
}

TEST(HandHistory, TellsAllInsSidePotsAndSplits) {
  Played hand;
  hand.table.stakes.rake = {500, cents(300)};
  hand.button = 4;
  hand.smallBlind = 1;
  hand.bigBlind = 2;
  const std::string record = hand.record({{1, "Ann", 1000, "AsAd"}, {2, "Bob", 3000, "KhQh"}, {4, "Cy", 6000, "KsQs"}},
                                         "2c7d9hJc3s", {{kAllIn, 0}, {kCall, 0}, {kCall, 0}});
  EXPECT_EQ(toText(storyOf(record, "Bob")), R"(Hand #17, Hold'em No Limit (1.00/2.00), 2026-11-18 11:06:40 UTC
Table "Table 1", 9 seats, the button is seat 4
Seat 1: Ann (10.00 in chips)
Seat 2: Bob (30.00 in chips)
Seat 4: Cy (60.00 in chips)
Ann: posts small blind 1.00
Bob: posts big blind 2.00
*** HOLE CARDS ***
Dealt to Bob [Kh Qh]
Cy: raises 58.00 to 60.00 and is all-in
Ann: calls 9.00 and is all-in
Bob: calls 28.00 and is all-in
Uncalled bet (30.00) returned to Cy
*** FLOP *** [2c 7d 9h]
*** TURN *** [2c 7d 9h] [Jc]
*** RIVER *** [2c 7d 9h Jc] [3s]
*** SHOW DOWN ***
Ann: shows [As Ad] (a pair of aces)
Bob: shows [Kh Qh] (king high)
Cy: shows [Ks Qs] (king high)
Ann collected 28.50 from main pot
Bob collected 19.25 from side pot
Cy collected 19.25 from side pot
*** SUMMARY ***
Total pot 70.00, main pot 28.50, side pot 38.50 | Rake 3.00
Board [2c 7d 9h Jc 3s]
Seat 1: Ann (small blind) showed [As Ad] and won 28.50 with a pair of aces
Seat 2: Bob (big blind) showed [Kh Qh] and won 19.25 with king high
Seat 4: Cy (button) showed [Ks Qs] and won 19.25 with king high
)");
}

TEST(HandHistory, TellsHeadsUpFixedLimitAndMucksWithoutTheCards) {
  Played hand;
  hand.table.stakes.limit = LimitType::FixedLimit;
  hand.button = hand.smallBlind = 0;
  hand.bigBlind = 3;
  const std::string record = hand.record({{3, "Bob", 20000, "9c9d"}, {0, "Ann", 20000, "AhKh"}}, "2c7dTh2s5s",
                                         {{kCall, 0},
                                          {kCheck, 0},
                                          {kCheck, 0},
                                          {kBet, 0},
                                          {kRaise, 0},
                                          {kCall, 0},
                                          {kCheck, 0},
                                          {kCheck, 0},
                                          {kBet, 0},
                                          {kCall, 0}});
  EXPECT_EQ(toText(storyOf(record, "Ann")), R"(Hand #17, Hold'em Fixed Limit (2.00/4.00), 2026-11-18 11:06:40 UTC
Table "Table 1", 9 seats, the button is seat 0
Seat 0: Ann (200.00 in chips)
Seat 3: Bob (200.00 in chips)
Ann: posts small blind 1.00
Bob: posts big blind 2.00
*** HOLE CARDS ***
Dealt to Ann [Ah Kh]
Ann: calls 1.00
Bob: checks
*** FLOP *** [2c 7d Th]
Bob: checks
Ann: bets 2.00
Bob: raises 2.00 to 4.00
Ann: calls 2.00
*** TURN *** [2c 7d Th] [2s]
Bob: checks
Ann: checks
*** RIVER *** [2c 7d Th 2s] [5s]
Bob: bets 4.00
Ann: calls 4.00
*** SHOW DOWN ***
Bob: shows [9c 9d] (two pair, nines and twos)
Ann: mucks hand
Bob collected 20.00 from pot
*** SUMMARY ***
Total pot 20.00 | Rake 0.00
Board [2c 7d Th 2s 5s]
Seat 0: Ann (button) (small blind) mucked [Ah Kh]
Seat 3: Bob (big blind) showed [9c 9d] and won 20.00 with two pair, nines and twos
)");
  std::string fromOld = toText(storyOf(asInVersionOne(record), "Ann"));
  fromOld.insert(fromOld.find(", the button"), ", 9 seats");
  EXPECT_EQ(fromOld, toText(storyOf(record, "Ann")));
  const std::string asBob = toText(storyOf(record, "Bob"));
  EXPECT_THAT(asBob, HasSubstr("Dealt to Bob [9c 9d]"));
  EXPECT_THAT(asBob, HasSubstr("Ann (button) (small blind) mucked\n"));
}

TEST(HandHistory, TellsPostsAndWhatNobodyCalled) {
  Played hand;
  hand.button = 0;
  hand.bigBlind = 2;
  const std::string record = hand.record({{2, "Bob", 20000, "9c9d"},
                                          {3, "Cy", 20000, "AhKh", true, true},
                                          {4, "Dan", 20000, "4h4c", false, true},
                                          {5, "Eve", 150, "8h8c", true}},
                                         "2c7dTh2s5s", {{kRaise, 600}, {kFold, 0}, {kFold, 0}});
  EXPECT_EQ(toText(storyOf(record, "Dan")), R"(Hand #17, Hold'em No Limit (1.00/2.00), 2026-11-18 11:06:40 UTC
Table "Table 1", 9 seats, the button is seat 0
Seat 2: Bob (200.00 in chips)
Seat 3: Cy (200.00 in chips)
Seat 4: Dan (200.00 in chips)
Seat 5: Eve (1.50 in chips)
Bob: posts big blind 2.00
Cy: posts 3.00, of it 1.00 dead
Dan: posts 1.00 dead
Eve: posts 1.50 and is all-in
*** HOLE CARDS ***
Dealt to Dan [4h 4c]
Cy: raises 6.00 to 8.00
Dan: folds
Bob: folds
Uncalled bet (6.00) returned to Cy
*** FLOP *** [2c 7d Th]
*** TURN *** [2c 7d Th] [2s]
*** RIVER *** [2c 7d Th 2s] [5s]
*** SHOW DOWN ***
Cy: shows [Ah Kh] (a pair of twos)
Eve: shows [8h 8c] (two pair, eights and twos)
Eve collected 6.50 from main pot
Cy collected 1.00 from side pot
*** SUMMARY ***
Total pot 7.50, main pot 6.50, side pot 1.00 | Rake 0.00
Board [2c 7d Th 2s 5s]
Seat 2: Bob (big blind) folded before the flop
Seat 3: Cy showed [Ah Kh] and won 1.00 with a pair of twos
Seat 4: Dan folded before the flop
Seat 5: Eve showed [8h 8c] and won 6.50 with two pair, eights and twos
)");
  // The old record does not tell what was dead, nor who won which pot.
  const std::string fromOld = toText(storyOf(asInVersionOne(record), "Dan"));
  EXPECT_THAT(fromOld, HasSubstr("posts 3.00, of it 1.00 dead\nDan: posts 1.00 dead\nEve: posts 1.50 and is all-in\n"));
  EXPECT_THAT(fromOld, HasSubstr("\nCy collected 1.00 from pot\nEve collected 6.50 from pot\n"));
}

TEST(HandHistory, TellsAWinnerWhoNeedNotShow) {
  for (const bool shows : {false, true}) {
    Played hand;
    hand.button = hand.smallBlind = 1;
    hand.bigBlind = 0;
    if (shows) hand.showsAnywayAt = {1};
    const std::string record = hand.record({{0, "Bob", 20000, "9c9d"}, {1, "Ann", 20000, "AhKh"}}, "2c7dTh2s5s",
                                           {{kCall, 0}, {kCheck, 0}, {kCheck, 0}, {kBet, 300}, {kFold, 0}});
    const std::string text = toText(storyOf(record, "Bob"));
    EXPECT_THAT(text,
                HasSubstr(shows ? "from pot\nAnn: shows [Ah Kh] (ace high)\n" : "from pot\nAnn: doesn't show hand\n"));
    EXPECT_THAT(text, HasSubstr(shows ? "(small blind) showed [Ah Kh] and won 4.00 with ace high\n"
                                      : "(small blind) collected 4.00\n"));
    EXPECT_THAT(text, Not(HasSubstr("SHOW DOWN")));
  }
}

TEST(HandHistory, NamesTheTournamentOfAHand) {
  Played hand;
  Bank bank({":memory:", 1});
  TourBank tours(bank);
  const std::uint32_t tour = hand.table.tournamentID = tours.open("Sunday");
  hand.button = hand.smallBlind = 1;
  hand.bigBlind = 0;
  const std::string record =
      hand.record({{0, "Bob", 20000, "9c9d"}, {1, "Ann", 20000, "AhKh"}}, "2c7dTh2s5s", {{kFold, 0}});
  const Account ann{*bank.openAccount("Ann", "secret", "", kZeroMoney), "Ann", kZeroMoney};
  const Account bob{*bank.openAccount("Bob", "secret", "", kZeroMoney), "Bob", kZeroMoney};
  ASSERT_TRUE(tours.enter(tour, ann.id, kZeroMoney, kZeroMoney));
  bank.finishHand({1, 17, record, {{ann.id, cents(20000), cents(20000), false}}, kZeroMoney, {}, {}, tour});

  HandHistory history(bank, *Log::getLog("test", LogCategory::Network));
  const StringVector texts = history.latestOf(ann, tour);
  ASSERT_EQ(texts.size(), 1u);
  EXPECT_THAT(texts[0], testing::StartsWith("Hand #17, Tournament 1, Hold'em No Limit (1.00/2.00), 2026-11-18"));
  EXPECT_EQ(history.textOf(ann, 17), texts);
  EXPECT_EQ(history.latestOf(bob, tour).size(), 0u);
  EXPECT_EQ(history.latestOf(ann, tour + 1).size(), 0u);
}

// Hands of bots

/// Every card that a text names.
std::set<std::string> cardsIn(const std::string& text) {
  static const std::regex kCard("\\b[2-9TJQKA][cdhs]\\b");
  std::set<std::string> cards;
  for (std::sregex_iterator i(text.begin(), text.end(), kCard), end; i != end; ++i) cards.insert(i->str());
  return cards;
}

/// The cards of a record's entry, in letters.
std::set<std::string> cardsOf(const Json& text) {
  std::set<std::string> cards;
  for (const Card& card : cardsFrom(text.get<std::string>())) {
    cards.insert({"?A23456789TJQKA"[static_cast<unsigned>(card.rank())], "?cdhs"[static_cast<unsigned>(card.suit())]});
  }
  return cards;
}

TEST(HandHistory, TellsEachPlayerOfTheHandsThatItPlayedAndOfNoCardThatItDidNotSee) {
  constexpr unsigned kPlayers = 6;
  Place place(test::quickServer(0, 2));
  std::vector<std::unique_ptr<Bot>> bots;
  for (unsigned i = 0; i < kPlayers; ++i) {
    bots.push_back(std::make_unique<Bot>(place.context, place.bot(i), [](PlayerEnd, std::string_view) {}));
    bots.back()->start();
  }
  ASSERT_TRUE(place.runUntil([&] { return place.table().handsPlayed() >= 300; }, 120s));

  Bank& bank = place.bank();
  HandHistory& history = place.server.house().history();
  const Account stranger{*bank.openAccount("Stranger", "secret", "", kZeroMoney), "Stranger", kZeroMoney};
  std::vector<Account> accounts;
  for (unsigned i = 0; i < kPlayers; ++i) accounts.push_back(*bank.logOn("Player " + std::to_string(i), "secret"));
  int absent = 0, hidden = 0;
  for (std::uint64_t number = 1; number <= bank.lastHandNumber(); ++number) {
    const Json record = Json::parse(*bank.handRecord(number));
    SCOPED_TRACE(record.dump());
    EXPECT_EQ(history.textOf(stranger, number).size(), 0u);
    for (const Account& player : accounts) {
      const auto isOwn = [&](const Json& entry) { return entry["name"] == player.name; };
      const bool played = std::any_of(record["players"].begin(), record["players"].end(), isOwn);
      const StringVector texts = history.textOf(player, number);
      ASSERT_EQ(texts.size(), played ? 1u : 0u);
      if (!played) {
        ++absent;
        continue;
      }
      std::set<std::string> known = cardsOf(record["board"]);
      for (const Json& entry : record["players"]) {
        if (isOwn(entry) || entry["shown"].get<bool>()) {
          known.merge(cardsOf(entry["cards"]));
        } else {
          ++hidden;
        }
      }
      EXPECT_EQ(cardsIn(texts[0]), known) << texts[0];
    }
  }
  EXPECT_GT(absent, 0);
  EXPECT_GT(hidden, 0);

  // The same over the wire, from another connection of a player.
  const Account& player = accounts[0];
  test::Guest guest(place, player.name);
  ASSERT_TRUE(guest.comesIn());
  const auto texts = [&](const ReplayRequestInfo& request) {
    return guest.ask<SrvRplHandHistory, ClRplGetHandHistory>(request).getGames();
  };
  const auto numbers = [&](const ReplayRequestInfo& request) -> Numbers {
    return guest.ask<SrvRplHandHistoryList, ClRplGetHandHistory>(request).getGames();
  };
  const auto get = [&](bool ofGame, std::uint64_t number, bool ofTournament) {
    return guest.ask<SrvRplHandHistory, ClGetHandHistory>(ofGame, static_cast<std::uint32_t>(number), ofTournament)
        .getGames();
  };
  ReplayRequestInfo request;
  const StringVector latest = texts(request);
  request.setListOnly(true);
  const Numbers all = numbers(request);
  const std::vector<std::uint64_t> own = bank.handsOf(player.id, 300);
  EXPECT_GT(latest.size(), 30u);
  EXPECT_LE(latest.size(), HandHistory::kMostTexts);
  EXPECT_GE(all.size(), latest.size());
  EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
  for (std::size_t i = 0; i < latest.size(); ++i) {
    // Newest last. Hands may have ended between the answers.
    EXPECT_THAT(all, testing::Contains(std::stoul(latest[i].substr(6))));
    EXPECT_TRUE(i == 0 || std::stoul(latest[i - 1].substr(6)) < std::stoul(latest[i].substr(6)));
  }
  request.setOpponent("PLAYER 1");
  request.setMostHands(3);
  EXPECT_EQ(numbers(request).size(), 3u);
  request.setFrom(COleDateTime(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(numbers(request), Numbers());
  EXPECT_EQ(get(false, own.back(), false), history.textOf(player, own.back()));
  EXPECT_GT(get(true, 1, false).size(), 30u) << "of the table";
  EXPECT_EQ(get(true, 2, false).size(), 0u);
  EXPECT_EQ(get(true, 1, true).size(), 0u);
  EXPECT_EQ(get(true, 0, true).size(), 0u) << "which is what the bank keeps for ring games";
}

// The filter

/// A bank with random hands, and what the hands were. They are of a tournament, where nobody needs a seat for them.
struct ManyHands {
  using Time = HandFilter::Time;
  static constexpr unsigned kPlayers = 6, kTables = 3;

  struct Hand {
    std::uint64_t number;
    std::uint32_t game;
    std::set<std::size_t> players;
    Time began, ended;
  };

  Bank bank{BankSettings{":memory:", 1}};
  std::vector<Account> accounts;
  std::vector<Hand> hands;

  ManyHands() {
    TourBank tours(bank);
    const std::uint32_t tour = tours.open("Sunday");
    for (unsigned i = 0; i < kPlayers; ++i) {
      const std::string name = "Player " + std::to_string(i);
      accounts.push_back({*bank.openAccount(name, "secret", "", kZeroMoney), name, {}});
      EXPECT_TRUE(tours.enter(tour, accounts[i].id, kZeroMoney, kZeroMoney));
    }
    for (std::uint64_t number = 1; number <= 1500; ++number) {
      const auto game = static_cast<std::uint32_t>(1 + below(kTables));
      const Time began = drawTime();
      Hand& hand = hands.emplace_back(Hand{number, game, {}, began, began + seconds(100)});
      FinishedHand booking{game, number, "{}", {}, kZeroMoney, began, hand.ended, tour};
      for (std::size_t i = number % kPlayers; i < kPlayers; i += 1 + below(3)) {
        hand.players.insert(i);
        booking.players.push_back({accounts[i].id, cents(100), cents(100), false});
      }
      bank.finishHand(booking);
    }
  }

  std::size_t below(std::size_t n) { return static_cast<std::size_t>(random_() % n); }
  std::chrono::seconds seconds(std::size_t most) { return std::chrono::seconds(below(most)); }
  Time drawTime() { return Time(1'700'000'000s) + seconds(20'000); }

 private:
  std::mt19937_64 random_{5};
};

TEST(HandHistory, FindsJustTheHandsThatMeetEveryCriterion) {
  ManyHands house;
  std::size_t found = 0, empty = 0;
  for (int i = 0; i < 1000; ++i) {
    const auto wants = [&] { return house.below(4) == 0; };
    const std::size_t player = house.below(house.kPlayers);
    const std::size_t opponent = wants() ? house.below(house.kPlayers + 1) : player;  // the last one is nobody
    HandFilter filter;
    if (opponent != player) filter.opponent = "pLAYER " + std::to_string(opponent);
    if (wants()) filter.game = static_cast<std::uint32_t>(house.below(house.kTables + 1));
    if (wants()) filter.from = house.drawTime();
    if (wants()) filter.to = house.drawTime();
    if (wants()) {
      auto& spans = filter.playedAt.emplace(house.below(200));
      for (HandFilter::Span& span : spans) {
        span.first = house.drawTime();
        span.last = span.first + house.seconds(60) - 2s;  // some end before they begin
      }
    }
    const std::size_t most = wants() ? house.below(20) : house.hands.size();
    std::vector<std::uint64_t> expected;  // newest first
    for (auto hand = house.hands.rbegin(); hand != house.hands.rend(); ++hand) {
      const bool isPlayed =
          !filter.playedAt || std::any_of(filter.playedAt->begin(), filter.playedAt->end(), [&](const auto& span) {
            return span.first <= span.last && hand->began <= span.last && hand->ended >= span.first;
          });
      if (isPlayed && hand->players.contains(player) && hand->players.contains(opponent) &&
          (!filter.game || hand->game == *filter.game) && (!filter.from || hand->began >= *filter.from) &&
          (!filter.to || hand->began <= *filter.to) && expected.size() < most) {
        expected.push_back(hand->number);
      }
    }
    ASSERT_EQ(house.bank.handsOf(house.accounts[player].id, most, filter), expected) << "request " << i;
    ++(expected.empty() ? empty : found);
  }
  EXPECT_GT(found, 300u);
  EXPECT_GT(empty, 50u);
}

TEST(HandHistory, FindsNothingForWhatIsNoTimeOrNoGameOfTheHouse) {
  ManyHands house;
  const Account& player = house.accounts[0];
  HandHistory history(house.bank, *Log::getLog("test", LogCategory::Network));
  const auto found = [&](const auto& change) {
    ReplayRequestInfo request;
    change(request);
    return history.numbers(player, request);
  };
  const auto all = found([](auto& request) { request.setGameType(GameType::TexasHoldem); });
  EXPECT_EQ(all.back(), 1500u);
  EXPECT_EQ(found([](auto& request) { request.setGameType(GameType::Omaha); }), Numbers());
  EXPECT_EQ(found([](auto& request) { request.setMostHands(2); }), Numbers(all.end() - 2, all.end()));
  // Of a time that is one the fractions of a second do not count.
  const COleDateTime good = COleDateTime::fromSysTime(house.hands.back().began + 900ms);
  EXPECT_THAT(found([&](auto& request) { request.setFrom(good); }), testing::Contains(1500u));
  for (const COleDateTime& bad :
       {COleDateTime(std::numeric_limits<double>::quiet_NaN()), COleDateTime(1e300),
        COleDateTime(45'000, COleDateTime::null), COleDateTime(45'000, COleDateTime::DateTimeStatus{77})}) {
    EXPECT_EQ(found([&](auto& request) { request.setFrom(bad); }), Numbers());
    EXPECT_EQ(found([&](auto& request) { request.setTo(bad); }), Numbers());
    for (const auto& [first, last] : {std::pair(good, bad), std::pair(bad, good)}) {
      ReplayInfo replay;
      replay.setStarted(first);
      replay.setEnded(last);
      EXPECT_EQ(found([&](auto& request) { request.addReplay(replay); }), Numbers());
    }
  }
  // "{}" is no record: such hands are left out, and the server goes on.
  EXPECT_EQ(history.latestAt(player, 1).size(), 0u);
}

}  // namespace
}  // namespace poker::holdem

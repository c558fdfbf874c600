#include "Place.h"

#include <examples/holdem/game/CardText.h>
#include <examples/holdem/server/bank/TourBank.h>
#include <examples/holdem/server/history/HandHistory.h>
#include <examples/holdem/server/history/RecordStory.h>
#include <hostkit/Decode.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <map>
#include <random>
#include <set>
#include <sstream>
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

/// The amount that the text begins with.
RealMoneyType amountIn(std::string_view text) {
  return RealMoneyType::fromText(text.substr(0, text.find_first_not_of("0123456789.")));
}
/// The amount that stands behind the mark; zero when it is not there.
RealMoneyType amountAfter(std::string_view mark, std::string_view text) {
  const std::size_t place = text.find(mark);
  return place == text.npos ? kZeroMoney : amountIn(text.substr(place + mark.size()));
}

/// Reads a text as a player does who adds up what happened, and holds it against the record.
class Reader {
 public:
  Reader(const std::string& text, const Json& record) : record_(record), action_(record["actions"].begin()) {
    for (const Json& player : record["players"]) left_[player["name"]] = cents(player["stack"].get<std::int64_t>());
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) read(line);
    EXPECT_EQ(action_, record["actions"].end()) << "an action of the record is missing";
    EXPECT_TRUE(total_);
    EXPECT_EQ(collected_ + rake_, total_);
    for (const Json& player : record["players"]) {
      EXPECT_EQ(won_[player["name"]], cents(player["won"].get<std::int64_t>()));
    }
  }

 private:
  void read(const std::string& line) {
    if (line == "*** SUMMARY ***") summary_ = true;
    if (line.starts_with("*** ") && !line.starts_with("*** HOLE")) bets_.clear();
    if (line.starts_with("Total pot ")) {
      total_ = amountAfter("Total pot ", line);
      rake_ = amountAfter("Rake ", line);
    }
    if (summary_) return;
    if (line.starts_with("Uncalled bet (")) {
      constexpr std::string_view kTo = " returned to ";
      expect(line.substr(line.find(kTo) + kTo.size()), UserAction::NoAction, amountAfter("(", line));
    }
    for (const Json& player : record_["players"]) {
      const std::string name = player["name"];
      if (line.starts_with(name + " collected ")) {
        won_[name] += amountAfter(" collected ", line);
        collected_ += amountAfter(" collected ", line);
      }
      if (line.starts_with(name + ": ")) act(name, line.substr(name.size() + 2));
    }
  }
  void act(const std::string& name, const std::string& what) {
    const std::string verb = what.substr(0, what.find(' '));
    if (verb == "shows" || verb == "mucks" || verb == "doesn't") return;
    RealMoneyType amount, dead;
    if (verb == "posts") {
      amount = amountIn(std::string_view(what).substr(what.find_first_of("0123456789")));
      if (what.ends_with("dead")) dead = what.find(", of it ") != what.npos ? amountAfter(", of it ", what) : amount;
    } else if (verb == "raises") {
      amount = amountAfter(" to ", what) - bets_[name];
    } else {
      amount = amountAfter(verb + ' ', what);
    }
    bets_[name] += amount - dead;
    ASSERT_NE(action_, record_["actions"].end());
    const auto code = static_cast<UserAction>((*action_)["action"].get<std::uint32_t>());
    EXPECT_EQ(verb == "folds", code == UserAction::Fold);
    EXPECT_EQ(verb == "checks", code == UserAction::Check);
    expect(name, code, amount);
    EXPECT_EQ(what.ends_with(" and is all-in"), amount > kZeroMoney && left_[name] == kZeroMoney) << what;
  }
  /// The next action of the record.
  void expect(const std::string& name, UserAction code, const RealMoneyType& amount) {
    ASSERT_NE(action_, record_["actions"].end());
    const Json& action = *action_++;
    const auto bySeat = [&](const Json& player) { return player["seat"] == action["seat"]; };
    EXPECT_EQ((*std::find_if(record_["players"].begin(), record_["players"].end(), bySeat))["name"], name);
    EXPECT_EQ(action["action"], actionBit(code));
    EXPECT_EQ(cents(action["amount"].get<std::int64_t>()), amount) << action.dump();
    left_[name] += code == UserAction::NoAction ? amount : kZeroMoney - amount;
  }

  const Json& record_;
  Json::const_iterator action_;
  std::map<std::string, RealMoneyType> left_, bets_, won_;
  std::optional<RealMoneyType> total_;
  RealMoneyType collected_, rake_;
  bool summary_ = false;
};

/// Every card that a text names.
std::set<std::string> cardsIn(std::string text) {
  for (char& c : text) c = std::string_view("[]()\n").find(c) != std::string_view::npos ? ' ' : c;
  std::istringstream words(text);
  std::set<std::string> cards;
  for (std::string word; words >> word;) {
    if (word.size() == 2 && std::string_view("23456789TJQKA").find(word[0]) != std::string_view::npos &&
        std::string_view("cdhs").find(word[1]) != std::string_view::npos) {
      cards.insert(word);
    }
  }
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

/// What the answers to one client hold.
struct Answers {
  std::vector<StringVector> texts;
  std::vector<Numbers> numbers;
  std::size_t largest = 0;  // frame

  void operator()(FrameDirection direction, std::span<const std::uint8_t> frame) {
    if (direction != FrameDirection::In) return;
    const DecodeResult decoded = decodeCommand(frame.subspan(kLengthSlot), DecodePolicy::of(Side::Client));
    ASSERT_TRUE(decoded);
    if (const auto* history = dynamic_cast<const SrvRplHandHistory*>(decoded.command.get())) {
      texts.push_back(history->getGames());
      largest = std::max(largest, frame.size());
    }
    if (const auto* list = dynamic_cast<const SrvRplHandHistoryList*>(decoded.command.get())) {
      numbers.push_back(list->getGames());
    }
  }
  std::size_t size() const { return texts.size() + numbers.size(); }
};

TEST(HandHistory, TellsEachPlayerOfTheHandsThatItPlayedAndOfNoCardThatItDidNotSee) {
  constexpr unsigned kPlayers = 6;
  ServerSettings settings = test::quickServer(0, kPlayers);
  settings.house.tables[0].stakes.smallBlind = cents(150);
  settings.house.tables[0].maxBuyIn = cents(20'000);
  Place place(settings);
  std::vector<std::unique_ptr<Bot>> bots;
  for (unsigned i = 0; i < kPlayers; ++i) {
    BotSettings bot = place.bot(i);
    bot.player.buyIn = cents(8'000 + 2'000 * i);
    bots.push_back(std::make_unique<Bot>(place.context, bot, [](PlayerEnd, std::string_view) {}));
    bots.back()->start();
  }
  // Now and then two of them sit out, and come back: one pays what it missed, one waits.
  constexpr std::uint64_t kHands = 300;
  std::uint64_t seen = 0;
  ASSERT_TRUE(place.runUntil(
      [&] {
        const std::uint64_t played = place.table().handsPlayed();
        if (std::exchange(seen, played) != played && (played % 16 == 4 || played % 16 == 12)) {
          for (const unsigned i : {0u, 1u}) {
            bots[i]->client().send<ClActionInAdvance>(actionBit(UserAction::SittingOut), kZeroMoney, played % 16 == 4);
            if (played % 16 == 12) bots[i]->client().send<ClBack>();
          }
        }
        return played >= kHands;
      },
      120s));

  Bank& bank = place.bank();
  HandHistory& history = place.server.house().history();
  const Account stranger{*bank.openAccount("Stranger", "secret", "", kZeroMoney), "Stranger", kZeroMoney};
  std::vector<Account> accounts;
  for (unsigned i = 0; i < kPlayers; ++i) accounts.push_back(*bank.logOn("Player " + std::to_string(i), "secret"));
  std::map<UserAction, int> actions;
  int absent = 0, hidden = 0, sidePots = 0;
  for (std::uint64_t number = 1; number <= bank.lastHandNumber(); ++number) {
    const Json record = Json::parse(*bank.handRecord(number));
    SCOPED_TRACE(record.dump());
    for (const Json& action : record["actions"]) ++actions[static_cast<UserAction>(action["action"].get<unsigned>())];
    sidePots += record["pots"].size() > 1 ? 1 : 0;
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
      Reader(texts[0], record);
      ASSERT_FALSE(testing::Test::HasFailure()) << texts[0];
    }
  }
  EXPECT_GT(absent, 0);
  EXPECT_GT(hidden, 0);
  EXPECT_GT(sidePots, 0);
  for (const UserAction action : {kFold, kCheck, kCall, kBet, kRaise, kAllIn, UserAction::Post, UserAction::NoAction}) {
    EXPECT_GT(actions[action], 0) << actionBit(action);
  }

  // The same over the wire.
  PlayerClient& client = bots[0]->client();
  const Account& player = accounts[0];
  Answers answers;
  client.observeFrames(std::ref(answers));
  ReplayRequestInfo request;
  client.send<ClRplGetHandHistory>(request);
  request.setListOnly(true);
  client.send<ClRplGetHandHistory>(request);
  request.setOpponent("PLAYER 1");
  request.setMostHands(3);
  client.send<ClRplGetHandHistory>(request);
  request.setFrom(COleDateTime(std::numeric_limits<double>::quiet_NaN()));
  client.send<ClRplGetHandHistory>(request);
  const std::vector<std::uint64_t> own = bank.handsOf(player.id, 300);
  client.send<ClGetHandHistory>(false, static_cast<std::uint32_t>(own.back()), false);
  client.send<ClGetHandHistory>(true, 1u, false);
  client.send<ClGetHandHistory>(true, 2u, false);
  client.send<ClGetHandHistory>(true, 1u, true);
  client.send<ClGetHandHistory>(true, 0u, true);  // which is what the bank keeps for ring games
  ASSERT_TRUE(place.runUntil([&] { return answers.size() == 9; }));
  ASSERT_EQ(answers.texts.size(), 6u);
  const StringVector& latest = answers.texts[0];
  EXPECT_GT(latest.size(), 30u);
  EXPECT_LE(latest.size(), HandHistory::kMostTexts);
  EXPECT_LT(answers.largest, SessionLimits().outputHard / 2);
  const Numbers& all = answers.numbers[0];
  EXPECT_GE(all.size(), own.size());
  EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
  for (std::size_t i = 0; i < latest.size(); ++i) {
    // Newest last; the bots have played on between the answers.
    EXPECT_EQ(history.textOf(player, all[all.size() - latest.size() + i])[0].substr(0, 10), latest[i].substr(0, 10));
  }
  EXPECT_EQ(answers.numbers[1].size(), 3u);
  EXPECT_EQ(answers.numbers[2], Numbers());
  EXPECT_EQ(answers.texts[1], history.textOf(player, own.back()));
  EXPECT_GT(answers.texts[2].size(), 30u);
  EXPECT_EQ(answers.texts[3].size() + answers.texts[4].size() + answers.texts[5].size(), 0u);
}

// The filter

/// A bank with random hands, and what the hands were.
struct ManyHands {
  static constexpr unsigned kPlayers = 6, kTables = 3;
  static constexpr std::int64_t kFirst = 1'700'000'000, kSpan = 20'000;

  struct Hand {
    std::uint32_t number;
    std::uint32_t game;
    std::set<std::size_t> players;
    std::int64_t began, ended;
  };

  Bank bank{BankSettings{":memory:", 1}};
  std::vector<Account> accounts;
  std::vector<Hand> hands;

  ManyHands() {
    std::vector<std::uint32_t> table(kPlayers);
    for (unsigned i = 0; i < kPlayers; ++i) {
      const std::string name = "Player " + std::to_string(i);
      accounts.push_back({*bank.openAccount(name, "secret", "", cents(1000)), name, {}});
    }
    for (std::uint32_t number = 1; number <= 1500; ++number) {
      const auto moves = below(kPlayers);
      if (table[moves] != 0) bank.standUp(accounts[moves].id);
      table[moves] = 1 + static_cast<std::uint32_t>(below(kTables));
      EXPECT_TRUE(bank.sitDown(accounts[moves].id, table[moves], static_cast<std::uint8_t>(moves), cents(100)));
      Hand& hand = hands.emplace_back();
      hand = {number, table[moves], {}, kFirst + static_cast<std::int64_t>(below(kSpan)), 0};
      hand.ended = hand.began + static_cast<std::int64_t>(below(100));
      FinishedHand booking{hand.game, number, "{}", {}, kZeroMoney, time(hand.began), time(hand.ended)};
      for (std::size_t i = 0; i < kPlayers; ++i) {
        if (table[i] != hand.game || (i != moves && below(3) == 0)) continue;
        hand.players.insert(i);
        booking.players.push_back({accounts[i].id, cents(100), cents(100), false});
      }
      bank.finishHand(booking);
    }
  }

  std::size_t below(std::size_t n) { return static_cast<std::size_t>(random_() % n); }
  static std::chrono::sys_seconds time(std::int64_t seconds) {
    return std::chrono::sys_seconds(std::chrono::seconds(seconds));
  }

 private:
  std::mt19937_64 random_{5};
};

TEST(HandHistory, FindsJustTheHandsThatMeetEveryCriterion) {
  ManyHands house;
  HandHistory history(house.bank, *Log::getLog("test", LogCategory::Network));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const COleDateTime noTimes[] = {COleDateTime(nan), COleDateTime(1e300), COleDateTime(45'000, COleDateTime::null),
                                  COleDateTime(45'000, COleDateTime::DateTimeStatus{77})};
  std::size_t found = 0, empty = 0;
  for (int i = 0; i < 1000; ++i) {
    const std::size_t player = house.below(house.kPlayers);
    // Seconds, or nothing when the date that is sent is none.
    using Second = std::optional<std::int64_t>;
    const auto drawTime = [&](COleDateTime& sent) -> Second {
      if (house.below(12) == 0) return sent = noTimes[house.below(std::size(noTimes))], std::nullopt;
      const auto second = house.kFirst + static_cast<std::int64_t>(house.below(house.kSpan));
      sent = COleDateTime::fromSysTime(house.time(second) + std::chrono::milliseconds(house.below(900)));
      return second;
    };
    const auto wants = [&] { return house.below(4) == 0; };
    ReplayRequestInfo request;
    std::vector<std::function<bool(const ManyHands::Hand&)>> criteria;
    COleDateTime sent;
    if (wants()) {
      const auto game = static_cast<std::uint32_t>(house.below(house.kTables + 1));
      request.setGameID(game);
      criteria.push_back([=](const auto& hand) { return hand.game == game; });
    }
    if (wants()) {
      const Second from = drawTime(sent);
      request.setFrom(sent);
      criteria.push_back([=](const auto& hand) { return from && hand.began >= *from; });
    }
    if (wants()) {
      const Second to = drawTime(sent);
      request.setTo(sent);
      criteria.push_back([=](const auto& hand) { return to && hand.began <= *to; });
    }
    if (wants()) {
      const bool holdem = house.below(4) != 0;
      request.setGameType(holdem ? GameType::TexasHoldem : GameType::Omaha);
      criteria.push_back([=](const auto&) { return holdem; });
    }
    if (wants()) {
      const std::size_t opponent = house.below(house.kPlayers + 1);  // the last one is nobody
      request.setOpponent("pLAYER " + std::to_string(opponent));
      criteria.push_back([=](const auto& hand) { return hand.players.contains(opponent); });
    }
    if (wants()) {
      std::vector<std::pair<std::int64_t, std::int64_t>> spans;
      for (std::size_t n = house.below(200); n != 0; --n) {
        ReplayInfo replay;
        const Second first = drawTime(sent);
        replay.setStarted(sent);
        const std::size_t length = house.below(60);
        replay.setEnded(house.below(20) == 0 ? noTimes[0] : sent + COleDateTimeSpan(0, 0, 0, static_cast<int>(length)));
        if (house.below(30) == 0) replay.setEnded(sent - COleDateTimeSpan(1.0));
        request.addReplay(replay);
        const auto last = replay.ended().toSysTime();
        if (first && last) {
          spans.emplace_back(*first, std::chrono::floor<std::chrono::seconds>(*last).time_since_epoch().count());
        }
      }
      if (!request.has(ReplayRequestInfo::kReplays)) continue;
      criteria.push_back([=](const auto& hand) {
        return std::any_of(spans.begin(), spans.end(), [&](const auto& span) {
          return span.first <= span.second && hand.began <= span.second && hand.ended >= span.first;
        });
      });
    }
    Numbers expected;
    for (const ManyHands::Hand& hand : house.hands) {
      const auto meets = [&](const auto& criterion) { return criterion(hand); };
      if (hand.players.contains(player) && std::all_of(criteria.begin(), criteria.end(), meets)) {
        expected.push_back(hand.number);
      }
    }
    if (wants()) {
      const std::size_t most = house.below(20);
      request.setMostHands(static_cast<std::uint32_t>(most));
      if (expected.size() > most) expected.erase(expected.begin(), expected.end() - static_cast<std::ptrdiff_t>(most));
    }
    ASSERT_EQ(history.numbers(house.accounts[player], request), expected) << "request " << i;
    ++(expected.empty() ? empty : found);
  }
  EXPECT_GT(found, 300u);
  EXPECT_GT(empty, 100u);
  // "{}" is no record: such hands are left out, and the server goes on.
  EXPECT_EQ(history.latestAt(house.accounts[0], 1).size(), 0u);
}

}  // namespace
}  // namespace poker::holdem

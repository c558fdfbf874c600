#include "Guest.h"
#include "TempFolder.h"

#include <examples/holdem/game/CardText.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using test::Guest;
using test::Place;
using test::TempFolder;

RealMoneyType chips(std::int64_t units) { return RealMoneyType::fromUnits(units); }

/// What should become of promotions, by the records of the hands in the order in which they ended.
class Expected {
 public:
  struct Winner {
    std::string name;
    std::uint64_t hand = 0;

    friend bool operator==(const Winner&, const Winner&) = default;
  };
  std::vector<std::optional<Winner>> over;  // the promotions that have ended
  std::optional<Winner> holder;             // of the one that is under way
  unsigned handsLeft;

  explicit Expected(unsigned hands) : handsLeft(hands), hands_(hands) {}

  void add(const std::string& text) {
    const nlohmann::json record = nlohmann::json::parse(text);
    for (const auto& player : record["players"]) {
      if (!player["shown"].get<bool>()) continue;
      const auto cards = *cardsFromText(player["cards"].get<std::string>() + record["board"].get<std::string>());
      const HandValue value = cards.size() < 5 ? HandValue() : HandValue::best(cards);
      if (value <= highest_) continue;
      highest_ = value;
      holder = Winner{player["name"].get<std::string>(), record["hand"].get<std::uint64_t>()};
    }
    if (--handsLeft == 0) end();
  }
  void end() {
    over.push_back(std::exchange(holder, std::nullopt));
    highest_ = kToBeat;
    handsLeft = hands_;
  }

 private:
  inline static const HandValue kToBeat = HandValue::best(*cardsFromText("AcAdKcKdQh"));

  unsigned hands_;
  HandValue highest_ = kToBeat;
};

// Two tables, and a house that drains twice and comes back, before it closes for good. Many promotions end, with and without
// a winner; another one is under way each time.
TEST(HighHands, PayWhoHeldTheHighestOfAllTablesOnceAlsoAcrossRestarts) {
  constexpr unsigned kHands = 7, kTables = 2, kPlayers = 4;
  const TempFolder folder;
  Expected expected(kHands);
  std::set<std::uint64_t> seen;
  std::uint64_t firstMissing = 1;
  unsigned heldAcrossRestarts = 0;
  for (unsigned session = 0; session < 3; ++session) {
    const bool isLast = session == 2;
    ServerSettings settings = test::quickServer(isLast ? 23 : 0, kPlayers);
    settings.grace = std::chrono::milliseconds::zero();
    settings.house.bank.file = folder.file("bank");
    settings.house.highHand = {chips(70), kHands};
    settings.house.tables.push_back(settings.house.tables[0]);
    settings.house.tables[1].gameID = 2;
    for (TableSettings& table : settings.house.tables) table.seed = 10 + session;
    Place place(settings);
    Guest onlooker(place, "Onlooker");
    ASSERT_TRUE(onlooker.comesIn());
    onlooker.enter(1);
    const auto& now = onlooker.ask<SrvHighHandInfo, ClGetHighHand>(false).getPromotions();
    ASSERT_EQ(now.size(), 1u);
    EXPECT_EQ(now[0].handsLeft, expected.handsLeft);
    ASSERT_EQ(now[0].hands.size(), expected.holder ? 1u : 0u);
    if (expected.holder) {
      ++heldAcrossRestarts;
      EXPECT_EQ(now[0].hands[0].userName, expected.holder->name);
      EXPECT_EQ(now[0].hands[0].dealID, expected.holder->hand);
    }

    const std::size_t overBefore = expected.over.size();
    std::vector<std::unique_ptr<Bot>> bots;
    for (unsigned i = 0; i < kTables * kPlayers; ++i) {
      BotSettings bot = place.bot(i);
      bot.player.seat = static_cast<std::uint8_t>(i / kTables);
      bot.player.gameID = i % kTables + 1;
      bots.push_back(std::make_unique<Bot>(place.context, bot, [](PlayerEnd, std::string_view) {}));
      bots.back()->start();
    }
    // One step of the loop ends one hand at most.
    const auto note = [&] {
      while (seen.contains(firstMissing)) ++firstMissing;
      const std::uint64_t begun = (seen.empty() ? 0 : *seen.rbegin()) + kTables;
      for (std::uint64_t number = firstMissing; number <= begun; ++number) {
        if (seen.contains(number)) continue;
        if (const auto record = place.bank().handRecord(number)) {
          seen.insert(number);
          expected.add(*record);
        }
      }
    };
    const std::size_t enough = (session + 1) * 100 + 3;
    ASSERT_TRUE(place.runUntil([&] {
      note();
      // Somebody is to hold the highest hand when the house comes back; what is played now does not end the promotion.
      const bool isHeld = expected.holder && expected.handsLeft > kTables;
      if (!isLast && seen.size() >= enough && isHeld && !place.server.isDraining()) place.server.drain();
      return place.ended;
    }));
    if (isLast && expected.handsLeft != kHands) expected.end();

    std::vector<Expected::Winner> told;
    onlooker.each<SrvUserWonPromotion>([&](const auto& won) { told.push_back({won.userName(), won.dealID()}); });
    std::vector<Expected::Winner> won;
    for (std::size_t i = overBefore; i < expected.over.size(); ++i) {
      if (expected.over[i]) won.push_back(*expected.over[i]);
    }
    EXPECT_EQ(told, won);
    // Every table is told of each end, and of the next beginning unless the house closes for good.
    std::vector<int> begun, ended;
    onlooker.each<SrvPromoNotify>([&](const SrvPromoNotify& notice) {
      EXPECT_EQ(notice.getTargetTables(), 0u);
      if (notice.getNotifyID() == SrvPromoNotify::Started) begun.push_back(notice.getRest());
      if (notice.getNotifyID() == SrvPromoNotify::Finished) ended.push_back(notice.getRest());
    });
    EXPECT_EQ(ended, std::vector<int>(expected.over.size() - overBefore, 0));
    EXPECT_EQ(begun, std::vector<int>(ended.size() + (session == 0 ? 1u : 0u) - (isLast ? 1u : 0u), int{kHands}));
    EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
    EXPECT_TRUE(place.server.house().report());
  }
  EXPECT_EQ(heldAcrossRestarts, 2u);

  // What each one got, by the file that is left.
  Bank bank({folder.file("bank"), 1});
  std::map<std::string, unsigned> prizes;
  unsigned nobody = 0;
  for (const auto& winner : expected.over) winner ? ++prizes[winner->name] : ++nobody;
  EXPECT_GT(prizes.size(), 2u);
  EXPECT_GT(nobody, 0u);
  RealMoneyType given;
  for (unsigned i = 0; i < kTables * kPlayers; ++i) {
    const std::string name = "Player " + std::to_string(i);
    const Gifts gifts = bank.gifts(bank.logOn(name, "secret").value().id, 1000);
    EXPECT_EQ(gifts.newest.size(), 1 + prizes[name]) << name;
    EXPECT_EQ(gifts.newest.back().reason, "Welcome");
    EXPECT_EQ(gifts.all, chips(100'000 + 70 * prizes[name])) << name;
    given += gifts.all;
  }
  EXPECT_EQ(bank.audit().issued, given + chips(100'000));  // and the onlooker's
  EXPECT_EQ(bank.audit().difference(), kZeroMoney);
}

/// A house's promotion with hands whose cards are chosen.
class Promotion : private HandEvents {
 public:
  Bank bank{BankSettings{":memory:", 1}};
  std::optional<HighHands> highHands;
  std::map<int, bool> showsAnywayOf;

  explicit Promotion(const HighHandSettings& settings)
      : outbox_([](const ConnectionID&, std::span<const std::uint8_t>) {}), hand_(*this) {
    for (const char* name : {"Ann", "Ben"}) {
      const AccountID account = bank.openAccount(name, "secret", "", chips(1000)).value();
      EXPECT_TRUE(bank.sitDown(account, 1, static_cast<std::uint8_t>(accounts_.size()), chips(500)));
      accounts_.push_back(account);
    }
    reopen(settings);
  }
  void reopen(const HighHandSettings& settings) {
    highHands.reset();
    highHands.emplace(bank, settings, outbox_, [](ConnectionsSet&) {});
  }
  /// Ann sits left of the button, and is dealt the first and the third card.
  void play(const char* cards, UserAction action = UserAction::Check, bool isLast = false) {
    Deck deck;
    deck.stack(*cardsFromText(cards));
    HandPlan plan;
    plan.size = 2;
    plan.seats[0].seat = SeatID(0);
    plan.seats[1].seat = SeatID(1);
    plan.button = plan.smallBlind = SeatID(1);
    plan.bigBlind = SeatID(0);
    const auto seats = bank.seated(1);
    highHands->onHandBegins();
    hand_.begin(
        Stakes(), plan, [&](const SeatID& seat) { return seats[seat.value()].stack; }, deck);
    while (!hand_.isOver()) {
      const bool isOpen = hand_.act(action, kZeroMoney) || hand_.act(UserAction::Call, kZeroMoney);
      ASSERT_TRUE(isOpen);
    }
    FinishedHand booking{1, bank.lastHandNumber() + 1, "{}", {}, hand_.pots().rake()};
    for (std::size_t i = 0; i < 2; ++i) {
      booking.players.push_back({accounts_[i], seats[i].stack, hand_.players()[i].stack, false});
    }
    highHands->finishHand(booking, hand_, isLast);
  }
  std::size_t prizesOf(unsigned player) { return bank.gifts(accounts_[player], 100).newest.size() - 1; }
  /// Holder and hands left of the promotion that is under way.
  std::string now() {
    const auto all = highHands->info(false);
    if (all.empty()) return "none";
    const std::string holder =
        all[0].hands.empty() ? "nobody" : all[0].hands[0].userName + " " + toText(all[0].hands[0].cards);
    return holder + ", " + std::to_string(all[0].handsLeft);
  }

 private:
  void onBlind(const HandPlayer&, UserAction, const RealMoneyType&) override {}
  void onDealt() override {}
  void onAction(const HandPlayer&, UserAction, const RealMoneyType&) override {}
  void onUncalled(const HandPlayer&, const RealMoneyType&) override {}
  void onRoundOver(Street) override {}
  void onBoard(Street, std::span<const Card>) override {}
  void onTurnedUp(const HandPlayer&) override {}
  bool showsAnyway(const HandPlayer& player) override { return showsAnywayOf[player.seat.value()]; }
  void onOver() override {}

  Outbox outbox_;
  Hand hand_;
  std::vector<AccountID> accounts_;
};

constexpr const char* kAcesAndKings = "Ac2c Ad3d KcKdQh7s8s";  // Ann's cards, mixed with Ben's, then the board
constexpr const char* kTrips = "5c9c 5d2d 5hKsQh7s8s";
constexpr const char* kBoardPlays = "2c3c 2d3d AsKsQsJsTs";

TEST(HighHands, TakeTheFirstOfEqualOnesAndOnlyWhatBeatsTheOneThatIsNamed) {
  Promotion promotion({chips(50), 5});
  promotion.play(kAcesAndKings);  // just as high as the hand that is to be beaten
  EXPECT_EQ(promotion.now(), "nobody, 4");
  promotion.play(kBoardPlays, UserAction::Fold);
  EXPECT_EQ(promotion.now(), "nobody, 3");
  promotion.play(kBoardPlays);  // both hold it
  EXPECT_EQ(promotion.now(), "Ann A♠ K♠ Q♠ J♠ T♠, 2");
  promotion.play("2cAs 3dKs QsJsTs7h8h");  // Ben's is as high
  EXPECT_EQ(promotion.now(), "Ann A♠ K♠ Q♠ J♠ T♠, 1");
  promotion.play(kTrips);
  EXPECT_EQ(promotion.now(), "nobody, 5");
  EXPECT_EQ(promotion.prizesOf(0), 1u);
  EXPECT_EQ(promotion.prizesOf(1), 0u);

  // Cards that are turned up with no flop make no five.
  promotion.showsAnywayOf[0] = promotion.showsAnywayOf[1] = true;
  promotion.play(kBoardPlays, UserAction::Fold);
  EXPECT_EQ(promotion.now(), "nobody, 4");
}

TEST(HighHands, AreWrittenWithTheirHandOrNotAtAll) {
  Promotion promotion({chips(50), 2});
  // The next one to end makes the house forget the first one.
  for (std::size_t i = 0; i < 2 * HighHands::kRemembered; ++i) promotion.play(kAcesAndKings);
  promotion.play(kTrips);
  const std::uint64_t last = promotion.bank.lastHandNumber();
  const std::string held = "Ann 5♣ 5♦ 5♥ K♠ Q♥, 1";
  EXPECT_EQ(promotion.now(), held);
  SQLite::Database& database = promotion.bank.database();
  for (const char* failure : {"INSERT ON gift", "UPDATE ON promotion", "DELETE ON promotion", "INSERT ON promotion"}) {
    database.exec(std::string("CREATE TRIGGER full BEFORE ") + failure + " BEGIN SELECT RAISE(ABORT, 'full'); END");
    EXPECT_THROW(promotion.play(kBoardPlays), BankError) << failure;
    EXPECT_EQ(promotion.now(), held) << failure;
    EXPECT_EQ(promotion.prizesOf(0), 0u) << failure;
    EXPECT_EQ(promotion.bank.lastHandNumber(), last) << failure;
    EXPECT_EQ(promotion.bank.audit().difference(), kZeroMoney) << failure;
    database.exec("DROP TRIGGER full");
  }
  promotion.play(kBoardPlays);
  EXPECT_EQ(promotion.prizesOf(0), 1u);
  EXPECT_THROW(promotion.bank.give(AccountID{1}, {chips(1), "nothing"}), BankError) << "outside of a transaction";
}

TEST(HighHands, GoOnAsTheyBeganAndEndWhenTheHouseClosesForGood) {
  Promotion promotion({chips(50), 3});
  promotion.play(kTrips);
  promotion.reopen({chips(9), 100});
  EXPECT_EQ(promotion.now(), "Ann 5♣ 5♦ 5♥ K♠ Q♥, 2");
  promotion.reopen({});
  promotion.play(kTrips);
  promotion.play(kTrips);
  EXPECT_EQ(promotion.now(), "none");
  EXPECT_EQ(promotion.bank.gifts(AccountID{1}, 1).newest[0].amount, chips(50));
  promotion.play(kTrips);

  promotion.reopen({chips(9), 100});
  promotion.play(kTrips);
  promotion.play(kTrips, UserAction::Check, true);
  EXPECT_EQ(promotion.now(), "none");
  EXPECT_EQ(promotion.prizesOf(0), 2u);
  EXPECT_EQ(promotion.bank.audit().difference(), kZeroMoney);

  // Those that are over are remembered, so many of them.
  promotion.reopen({chips(1), 1});
  for (int i = 0; i < 15; ++i) promotion.play(kTrips);
  const auto all = promotion.highHands->info(true);
  ASSERT_EQ(all.size(), 1 + HighHands::kRemembered);
  EXPECT_EQ(all[0].handsLeft, 1u);
  EXPECT_EQ(all[1].handsLeft, 0u);
  EXPECT_EQ(all[1].hands.size(), 1u);
}

}  // namespace
}  // namespace poker::holdem

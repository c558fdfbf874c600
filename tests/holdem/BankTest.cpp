#include "BankOutcome.h"
#include "TempFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <examples/holdem/server/bank/TourBank.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace poker::holdem {
namespace {

using test::Outcome;
using test::outcomeOf;
using test::TempFolder;
using testing::HasSubstr;
using testing::ThrowsMessage;

constexpr RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }

/// Cheap passwords: what they cost is nothing that a test needs.
BankSettings settings(const std::string& file = ":memory:") { return {file, 1}; }

std::string bytesOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Four of six players find a seat. Each step's outcome, and all money after it, is what this small copy of the bank says.
TEST(Bank, KeepsMoneyThroughAnyOperations) {
  struct Player {
    AccountID id;
    std::int64_t balance;
    std::optional<SeatID> seat = {};
    std::int64_t stack = 0;
  };
  Bank bank(settings());
  std::map<std::string, Player> players;
  const std::string names[] = {"Anna", "Bert", "Carl", "Dora", "Emil", "Fay"};
  for (const auto& name : names) players[name] = {bank.openAccount(name, "secret", "", cents(5000)).value(), 5000};
  std::mt19937 random(7);
  const auto upTo = [&](std::int64_t most) { return std::uniform_int_distribution<std::int64_t>(0, most)(random); };
  std::map<Outcome, int> outcomes;
  for (std::uint64_t step = 1; step <= 3000; ++step) {
    Player& player = players[names[upTo(5)]];
    const std::int64_t amount = upTo(3000);
    const SeatID seat(static_cast<std::uint8_t>(upTo(3)));
    const Outcome affords = amount > player.balance ? Outcome::Refused : Outcome::Done;
    Outcome expected = Outcome::Thrown;
    Outcome outcome{};
    Player after = player;
    switch (upTo(3)) {
      case 0:
        if (std::none_of(players.begin(), players.end(), [&](auto& other) { return other.second.seat == seat; }) &&
            !player.seat && amount > 0) {
          expected = affords;
        }
        outcome = outcomeOf([&] { return bank.sitDown(player.id, 1, seat, cents(amount)); });
        after = {player.id, player.balance - amount, seat, amount};
        break;
      case 1:
        if (player.seat && amount > 0) expected = affords;
        outcome = outcomeOf([&] { return bank.addChips(player.id, cents(amount)); });
        after = {player.id, player.balance - amount, player.seat, player.stack + amount};
        break;
      case 2:
        if (player.seat) expected = Outcome::Done;
        outcome = outcomeOf([&] { return bank.standUp(player.id) == cents(player.stack); });
        after = {player.id, player.balance + player.stack};
        break;
      default: {  // the player wins all chips on the table
        FinishedHand hand{1, step, "{}", {}, cents(upTo(3))};
        after.stack = -hand.rake.hundredths();
        for (const auto& [name, other] : players) after.stack += other.stack;
        for (const auto& [name, other] : players) {
          if (!other.seat && &other != &player) continue;
          hand.players.push_back({other.id, cents(other.stack), cents(&other == &player ? after.stack : 0), false});
        }
        if (player.seat && after.stack >= 0) expected = Outcome::Done;
        outcome = outcomeOf([&] { return bank.finishHand(hand), true; });
        if (outcome != Outcome::Done) break;
        for (auto& [name, other] : players) other.stack = 0;
      }
    }
    if (outcome == Outcome::Done) player = after;
    ++outcomes[outcome];
    ASSERT_EQ(outcome, expected) << "step " << step;
    ASSERT_EQ(bank.audit().difference(), kZeroMoney) << "step " << step;
    for (const Standing& standing : bank.standings()) {
      ASSERT_EQ(standing.balance, cents(players[standing.name].balance)) << "step " << step;
      ASSERT_EQ(standing.stack, cents(players[standing.name].stack)) << "step " << step;
    }
  }
  for (const Outcome outcome : {Outcome::Done, Outcome::Refused, Outcome::Thrown}) EXPECT_GT(outcomes[outcome], 100);
}

TEST(Bank, RefusesHandsThatDoNotHold) {
  Bank bank(settings());
  const AccountID anna = bank.openAccount("Anna", "secret", "", cents(900)).value();
  const AccountID bert = bank.openAccount("Bert", "secret", "", cents(900)).value();
  const AccountID carl = bank.openAccount("Carl", "secret", "", cents(900)).value();
  ASSERT_TRUE(bank.sitDown(anna, 1, 0, cents(500)) && bank.sitDown(bert, 1, 1, cents(400)));
  ASSERT_TRUE(bank.sitDown(carl, 2, 1, cents(300)));
  const FinishedHand good{
      1, 5, "the record", {{anna, cents(500), cents(700), true}, {bert, cents(400), cents(190), false}}, cents(10)};
  bank.finishHand(good);
  const auto standings = bank.standings();
  EXPECT_EQ(standings.front(), (Standing{"Anna", cents(900), cents(400), cents(700), 1, 1}));

  const std::int64_t most = std::numeric_limits<std::int64_t>::max();
  using Players = std::vector<FinishedHand::Player>;
  const std::tuple<const char*, Players, std::int64_t, std::uint64_t> bad[] = {
      {"a chip appears", {{anna, cents(700), cents(701), true}}, 0, 6},
      {"a chip vanishes", {{anna, cents(700), cents(699), true}}, 0, 6},
      {"not its stack", {{anna, cents(500), cents(500), true}}, 0, 6},
      {"below zero", {{anna, cents(700), cents(891), true}, {bert, cents(190), cents(-1), false}}, 0, 6},
      {"rake below zero", {{anna, cents(700), cents(701), true}}, -1, 6},
      {"the second one is wrong", {{anna, cents(700), cents(600), true}, {bert, cents(90), cents(190), false}}, 0, 6},
      {"sums beyond the range", {{anna, cents(700), cents(most), true}, {bert, cents(most), cents(700), false}}, 0, 6},
      {"at another game", {{anna, cents(700), cents(600), true}, {carl, cents(300), cents(400), false}}, 0, 6},
      {"named twice", {{anna, cents(700), cents(700), true}, {anna, cents(700), cents(700), true}}, 0, 6},
      {"the number again", {{anna, cents(700), cents(700), true}}, 0, 5},
      {"no number", {{anna, cents(700), cents(700), true}}, 0, 0},
  };
  for (const auto& [what, players, rake, number] : bad) {
    EXPECT_THROW(bank.finishHand({1, number, "", players, cents(rake)}), BankError) << what;
    EXPECT_EQ(bank.standings(), standings) << what;
    EXPECT_EQ(bank.lastHandNumber(), 5u) << what;
    EXPECT_EQ(bank.audit().rake, cents(10)) << what;
  }
  EXPECT_EQ(bank.handRecord(5), "the record");
  EXPECT_EQ(bank.handRecord(6), std::nullopt);
  bank.finishHand({1, 9, "", {{anna, cents(700), cents(700), false}}, kZeroMoney});
  EXPECT_EQ(bank.handsOf(anna, 10), (std::vector<std::uint64_t>{9, 5}));
  EXPECT_EQ(bank.handsOf(anna, 1), (std::vector<std::uint64_t>{9}));
}

// Its chips are no money: whoever plays there may sit at a table, too, and keeps that stack.
TEST(Bank, KeepsHandsOfTournamentsApartFromMoney) {
  Bank bank(settings());
  TourBank tours(bank);
  const AccountID anna = bank.openAccount("Anna", "secret", "", cents(900)).value();
  const AccountID bert = bank.openAccount("Bert", "secret", "", cents(900)).value();
  const AccountID carl = bank.openAccount("Carl", "secret", "", cents(900)).value();
  const std::uint32_t tour = tours.open("Sunday"), other = tours.open("Monday");
  for (const AccountID player : {anna, bert}) ASSERT_TRUE(tours.enter(tour, player, cents(100), cents(10)));
  ASSERT_TRUE(tours.enter(other, carl, cents(100), cents(10)));
  ASSERT_TRUE(bank.sitDown(anna, 1, 0, cents(700)));
  const auto hand = [&](std::uint64_t number, std::vector<FinishedHand::Player> players, std::uint32_t tournament) {
    return FinishedHand{9, number, "the record", std::move(players), kZeroMoney, {}, {}, tournament};
  };
  bank.finishHand({1, 1, "", {{anna, cents(700), cents(700), true}}, kZeroMoney});
  bank.finishHand(hand(2, {{anna, cents(1500), cents(3000), true}, {bert, cents(1500), {}, false}}, tour));
  bank.finishHand(hand(3, {{carl, cents(1500), cents(1500), true}}, other));
  const auto standings = bank.standings();
  EXPECT_EQ(standings.front(), (Standing{"Anna", cents(900), cents(90), cents(700), 2, 2}));
  EXPECT_EQ(bank.audit().difference(), kZeroMoney);
  EXPECT_EQ(bank.handRecord(2, bert), "the record");
  HandFilter filter;
  for (const auto& [tournament, hands] :
       {std::pair(0u, std::vector<std::uint64_t>{1}), {tour, {2}}, {other, {}}, {99u, {}}}) {
    filter.tournament = tournament;
    EXPECT_EQ(bank.handsOf(anna, 10, filter), hands) << tournament;
  }

  FinishedHand raked = hand(4, {{anna, cents(1500), cents(1490), true}}, tour);
  raked.rake = cents(10);
  const std::pair<const char*, FinishedHand> bad[] = {
      {"a chip appears", hand(4, {{anna, cents(1500), cents(1501), true}}, tour)},
      {"a stack below zero",
       hand(4, {{anna, cents(500), cents(900), true}, {bert, cents(300), cents(-100), false}}, tour)},
      {"a rake", raked},
      {"plays in another one", hand(4, {{carl, cents(1500), cents(1500), true}}, tour)},
      {"no such tournament", hand(4, {{anna, cents(1500), cents(1500), true}}, 99)},
      {"named twice", hand(4, {{anna, cents(10), cents(10), true}, {anna, cents(10), cents(10), true}}, tour)},
      {"the number again", hand(3, {{anna, cents(1500), cents(1500), true}}, tour)},
  };
  for (const auto& [what, booking] : bad) {
    EXPECT_THROW(bank.finishHand(booking), BankError) << what;
    EXPECT_EQ(bank.standings(), standings) << what;
    EXPECT_EQ(bank.lastHandNumber(), 3u) << what;
  }
  tours.callOff(tour);
  EXPECT_THROW(bank.finishHand(hand(4, {{anna, cents(1500), cents(1500), true}}, tour)), BankError) << "it is over";
}

TEST(Bank, KnowsItsPlayersByNameAndPassword) {
  const TempFolder folder;
  const std::string file = folder.file("bank");
  {
    Bank bank(settings(file));
    const AccountID anna = bank.openAccount("Anna B", "geheimes Wort", "anna@poker.example", cents(100)).value();
    EXPECT_EQ(bank.openAccount("aNNA b", "another", "", cents(100)), std::nullopt);
    EXPECT_EQ(bank.audit().issued, cents(100));
    const auto account = bank.logOn("anna b", "geheimes Wort");
    ASSERT_TRUE(account);
    EXPECT_EQ(std::tie(account->id, account->name, account->balance), std::tuple(anna, "Anna B", cents(100)));
    for (const std::string wrong : {"geheimes wort", "geheimes Wor", "geheimes Wort ", "nobody has this one", ""}) {
      EXPECT_FALSE(bank.logOn("Anna B", wrong)) << wrong;
    }
    EXPECT_FALSE(bank.logOn("Anna B", std::string_view("geheimes Wort\0more", 18))) << "cut at the NUL";
    EXPECT_FALSE(bank.logOn("Nobody", "nobody has this one")) << "the stand-in for an unknown name let somebody in";
    EXPECT_THROW(bank.openAccount("Bert", "no", "", cents(100)), BankError);
    EXPECT_THROW(bank.openAccount("Bert", "secret", "", cents(-1)), BankError);
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
  }
  EXPECT_THAT(bytesOf(file), HasSubstr("Anna B"));
  EXPECT_EQ(bytesOf(file).find("heimes W"), std::string::npos);
  EXPECT_TRUE(Bank({file, 2}).logOn("ANNA B", "geheimes Wort")) << "the cost is that of new accounts";

  for (const std::string good : {"ab", "A-b_c.9", "in  side", "12345678901234567890"}) {
    EXPECT_TRUE(isAcceptableName(good)) << good;
  }
  for (const std::string bad : {"", "a", " ab", "ab ", "a\tb", "J\xC3\xBCrgen", "a'b", "123456789012345678901"}) {
    EXPECT_FALSE(isAcceptableName(bad)) << bad;
  }
  EXPECT_FALSE(isAcceptableName(std::string_view("a\0b", 3)));
  EXPECT_TRUE(isAcceptablePassword("\xC3\xBC \xC3\xBC") && isAcceptablePassword(std::string(64, 'x')));
  EXPECT_FALSE(isAcceptablePassword("abc") || isAcceptablePassword(std::string(65, 'x')) ||
               isAcceptablePassword("ab\ncd") || isAcceptablePassword("ab\x7F cd"));
}

TEST(Bank, OpensNoFileThatIsNotItsOwn) {
  const TempFolder folder;
  const auto refuses = [&](const char* file, const char* why) {
    EXPECT_THAT([&] { Bank bank(settings(folder.file(file))); }, ThrowsMessage<BankError>(HasSubstr(why))) << file;
  };
  const Bank first(settings(folder.file("mine")));
  refuses("mine", "in use by another server");

  std::ofstream(folder.file("text")) << "This is a letter.\n";
  refuses("text", "not a database");
  refuses("no/such/folder", "cannot open");

  SQLite::Database(folder.file("foreign"), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec("CREATE TABLE t(x)");
  const std::string foreign = bytesOf(folder.file("foreign"));
  refuses("foreign", "something else");
  EXPECT_EQ(bytesOf(folder.file("foreign")), foreign);

  { Bank bank(settings(folder.file("newer"))); }
  SQLite::Database(folder.file("newer"), SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 1000");
  refuses("newer", "version 1000");
  EXPECT_THROW(Bank({":memory:", 0}), BankError);
  EXPECT_THROW(Bank({":memory:", 99}), BankError);
}

// A bank of the first version knew of a hand who played it, and the rest by its record alone.
TEST(Bank, BringsAnOlderFileUpToDate) {
  const TempFolder folder;
  const std::string file = folder.file("old");
  const std::pair<std::uint64_t, const char*> hands[] = {
      {3, R"({"hand": 3, "began": 1795000000})"}, {4, "no record"}, {7, R"({"hand": 7, "began": 1795000100})"}};
  AccountID anna{};
  {
    Bank bank(settings(file));
    anna = bank.openAccount("Anna", "secret", "", cents(500)).value();
    ASSERT_TRUE(bank.sitDown(anna, 2, 0, cents(500)));
    for (const auto& [number, record] : hands) {
      bank.finishHand({2, number, record, {{anna, cents(500), cents(500), false}}, kZeroMoney});
    }
  }
  SQLite::Database(file, SQLite::OPEN_READWRITE)
      .exec(
          "DROP TABLE tournament_entry; DROP TABLE tournament; ALTER TABLE hand_player DROP COLUMN tournament;"
          "ALTER TABLE hand_player DROP COLUMN game; ALTER TABLE hand_player DROP COLUMN began;"
          "ALTER TABLE hand_player DROP COLUMN ended; PRAGMA user_version = 3");
  for (int opening = 0; opening < 2; ++opening) {
    Bank bank(settings(file));
    HandFilter filter;
    filter.game = 2;
    EXPECT_EQ(bank.handsOf(anna, 10, filter), (std::vector<std::uint64_t>{7, 4, 3}));
    filter.from = filter.to = HandFilter::Time(std::chrono::seconds(1'795'000'000));
    EXPECT_EQ(bank.handsOf(anna, 10, filter), std::vector<std::uint64_t>{3});
    filter.game = 1;
    EXPECT_EQ(bank.handsOf(anna, 10, filter), std::vector<std::uint64_t>{});
    EXPECT_EQ(bank.standings().front().handsPlayed, 3);
  }
}

/// The operation number `i`, from 0, of games between accounts 1 and 2.
void play(Bank& bank, std::uint32_t i) {
  const AccountID player{i % 2 + 1};
  if (i % 8 < 2) {
    ASSERT_TRUE(bank.sitDown(player, 1, static_cast<std::uint8_t>(i % 2), cents(300)));
  } else if (i % 8 > 5) {
    bank.standUp(player);
  } else {
    FinishedHand hand{1, i, "{}", {}, cents(1)};
    for (const auto& [account, name, seat, stack] : bank.seated(1)) {
      const bool wins = account == player;
      hand.players.push_back({account, stack, stack + cents(wins ? 10 : -11), wins});
    }
    bank.finishHand(hand);
  }
}

void openAccounts(Bank& bank) {
  for (const char* name : {"Anna", "Bert"}) bank.openAccount(name, "secret", "", RealMoneyType::fromUnits(100000));
}

// A child process plays until it is killed, and says after each operation that it is done. The same operations on another
// bank tell what must be there then.
TEST(Bank, LosesNothingWhenTheServerIsKilled) {
  const TempFolder folder;
  const std::string file = folder.file("bank");
  Bank expected(settings());
  openAccounts(expected);
  {
    Bank bank(settings(file));
    openAccounts(bank);
  }
  std::uint32_t done = 0;  // operations that are in `expected`
  std::mt19937 random(11);
  for (int round = 0; round < 8; ++round) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      try {
        Bank bank(settings(file));
        for (std::uint32_t i = done;; ++i) {
          play(bank, i);
          if (write(ends[1], &i, sizeof i) != sizeof i) break;
        }
      } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
      }
      _exit(1);
    }
    close(ends[1]);
    std::uint32_t i = 0;
    EXPECT_EQ(read(ends[0], &i, sizeof i), ssize_t{sizeof i}) << "the child could not play";
    EXPECT_THROW(Bank{settings(file)}, BankError) << "two processes use one bank";
    std::this_thread::sleep_for(std::chrono::microseconds(std::uniform_int_distribution(0, 30000)(random)));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself";
    while (read(ends[0], &i, sizeof i) == ssize_t{sizeof i}) continue;
    close(ends[0]);

    while (done <= i) ASSERT_NO_THROW(play(expected, done++));
    Bank bank(settings(file));
    EXPECT_EQ(bank.audit().difference(), kZeroMoney);
    if (bank.standings() != expected.standings()) play(expected, done++);  // one more may be done that was not said
    ASSERT_EQ(bank.standings(), expected.standings()) << "after operation " << i << " of round " << round;
    ASSERT_EQ(bank.lastHandNumber(), expected.lastHandNumber());
  }
  EXPECT_GT(done, 100u);
}

}  // namespace
}  // namespace poker::holdem

#include "TempFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <examples/holdem/server/bank/TourBank.h>
#include <examples/holdem/server/members/Members.h>
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

using test::TempFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

constexpr RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }

/// Cheap passwords: what they cost is nothing that a test needs.
BankSettings settings(const std::string& file = ":memory:") { return {file, 1}; }

/// How an operation of the bank ended.
enum class Outcome { Done, Refused, Thrown };

/// @param operation  false: refused
Outcome outcomeOf(auto operation) {
  try {
    return operation() ? Outcome::Done : Outcome::Refused;
  } catch (const BankError&) {
    return Outcome::Thrown;
  }
}

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

/// A bank's file as a server wrote it that knew no profiles, gifts and promotions, and of a hand who played it, and the rest
/// by its record alone.
constexpr const char* kFirstVersion = R"sql(
  PRAGMA application_id = 1347109425; PRAGMA user_version = 1;
  CREATE TABLE account(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE COLLATE NOCASE,
    password TEXT NOT NULL, email TEXT NOT NULL, issued INTEGER NOT NULL CHECK(issued >= 0),
    balance INTEGER NOT NULL CHECK(balance >= 0), hands_played INTEGER NOT NULL DEFAULT 0,
    hands_won INTEGER NOT NULL DEFAULT 0) STRICT;
  CREATE TABLE seat(account INTEGER PRIMARY KEY REFERENCES account, game INTEGER NOT NULL, seat INTEGER NOT NULL,
    stack INTEGER NOT NULL CHECK(stack >= 0), UNIQUE(game, seat)) STRICT;
  CREATE TABLE hand(number INTEGER PRIMARY KEY CHECK(number > 0), game INTEGER NOT NULL,
    rake INTEGER NOT NULL CHECK(rake >= 0), record TEXT NOT NULL) STRICT;
  CREATE TABLE hand_player(account INTEGER NOT NULL REFERENCES account, hand INTEGER NOT NULL REFERENCES hand,
    PRIMARY KEY(account, hand)) STRICT, WITHOUT ROWID;
  CREATE TABLE house(id INTEGER PRIMARY KEY CHECK(id = 1), rake INTEGER NOT NULL CHECK(rake >= 0)) STRICT;
  INSERT INTO house VALUES(1, 50);
  INSERT INTO account(name, password, email, issued, balance, hands_played) VALUES
    ('Ann', 'the hash', '', 1000, 650, 3), ('Ben', 'x', 'ben@poker.example', 0, 0, 1);
  INSERT INTO seat VALUES(1, 2, 3, 300);
  INSERT INTO hand VALUES(3, 2, 50, '{"hand": 3, "began": 1795000000}'), (4, 2, 0, 'no record'),
    (7, 2, 0, '{"hand": 7, "began": 1795000100}');
  INSERT INTO hand_player VALUES(1, 3), (1, 4), (1, 7), (2, 7);
)sql";

TEST(Bank, TakesAFileOfAnEarlierServer) {
  const TempFolder folder;
  const std::string file = folder.file("bank");
  SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(kFirstVersion);
  // The first time it is brought up to date, the second time it is.
  for (int time = 0; time < 2; ++time) {
    Bank bank({file, 1});
    EXPECT_EQ(bank.audit().difference(), kZeroMoney);
    EXPECT_EQ(bank.audit().issued, cents(1000));
    EXPECT_EQ(bank.standings().front(), (Standing{"Ann", cents(1000), cents(650), cents(300), 3, 0}));
    EXPECT_EQ(bank.handRecord(4), "no record");
    EXPECT_THAT(bank.handsOf(AccountID{2}, 9), ElementsAre(7));
    HandFilter filter;
    filter.game = 2;
    EXPECT_THAT(bank.handsOf(AccountID{1}, 9, filter), ElementsAre(7, 4, 3));
    filter.from = filter.to = HandFilter::Time(std::chrono::seconds(1'795'000'000));
    EXPECT_THAT(bank.handsOf(AccountID{1}, 9, filter), ElementsAre(3));
    filter.game = 1;
    EXPECT_THAT(bank.handsOf(AccountID{1}, 9, filter), ElementsAre());
    const Gifts gifts = bank.gifts(AccountID{1}, 9);
    ASSERT_EQ(gifts.newest.size(), 1u);
    EXPECT_EQ(gifts.newest[0].reason, "Welcome");
    EXPECT_EQ(gifts.newest[0].amount, cents(1000));
    EXPECT_TRUE(bank.gifts(AccountID{2}, 9).newest.empty());

    Members members(bank);
    MemberProfileInfo info = members.profile("ann").value();
    EXPECT_EQ(info.memberSince.bits(), 0u);
    EXPECT_EQ(info.city, time == 0 ? "" : "Reno");
    info.city = "Reno";
    EXPECT_EQ(members.change(AccountID{1}, info).city, "Reno");
    EXPECT_EQ(bank.openAccount("Cy", "secret", "", kZeroMoney).has_value(), time == 0);
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

// Each step's outcome, and all money after it, is what this small copy of the bank says.
TEST(TourBank, KeepsMoneyThroughAnyOperations) {
  struct Entry {
    std::int64_t fund, fee;
  };
  struct Tour {
    std::map<std::size_t, Entry> entries;  // by player
    std::int64_t added = 0;
    bool isOpen = true;

    std::int64_t fund() const {
      std::int64_t sum = added;
      for (const auto& [player, entry] : entries) sum += entry.fund;
      return sum;
    }
    std::int64_t fees() const {
      std::int64_t sum = 0;
      for (const auto& [player, entry] : entries) sum += entry.fee;
      return sum;
    }
  };
  constexpr std::size_t kPlayers = 5;
  Bank bank(settings());
  TourBank tours(bank);
  std::vector<AccountID> ids;
  std::vector<std::int64_t> balances(kPlayers, 10'000);
  std::vector<std::uint32_t> wins(kPlayers);
  for (std::size_t i = 0; i < kPlayers; ++i) {
    ids.push_back(bank.openAccount("Player " + std::to_string(i), "secret", "", cents(balances[i])).value());
  }
  std::map<std::uint32_t, Tour> all;
  std::int64_t rake = 0, issued = 10'000 * kPlayers;
  std::mt19937 random(3);
  const auto upTo = [&](std::int64_t most) { return std::uniform_int_distribution<std::int64_t>(0, most)(random); };
  std::map<Outcome, int> outcomes;
  for (int step = 0; step < 4000; ++step) {
    if (step % 40 == 0) {
      ASSERT_TRUE(all.try_emplace(tours.open("Tour")).second) << "a number was given twice";
    }
    const auto number = static_cast<std::uint32_t>(std::max<std::int64_t>(1, std::ssize(all) - upTo(3)));
    Tour& tour = all.at(number);
    const auto player = static_cast<std::size_t>(upTo(kPlayers - 1));
    const bool isIn = tour.entries.contains(player);
    const std::int64_t price = upTo(9000), fee = upTo(20);
    Outcome expected = Outcome::Thrown, outcome{};
    Tour after = tour;
    std::vector<std::int64_t> balancesAfter = balances;
    switch (upTo(9)) {
      default:
        if (tour.isOpen && !isIn) expected = price + fee > balances[player] ? Outcome::Refused : Outcome::Done;
        outcome = outcomeOf([&] { return tours.enter(number, ids[player], cents(price), cents(fee)); });
        after.entries[player] = {price, fee};
        balancesAfter[player] -= price + fee;
        break;
      case 0:
      case 1:
        if (tour.isOpen && isIn) expected = price > balances[player] ? Outcome::Refused : Outcome::Done;
        outcome = outcomeOf([&] { return tours.buyChips(number, ids[player], cents(price)); });
        after.entries[player].fund += price;
        balancesAfter[player] -= price;
        break;
      case 2:
        if (tour.isOpen && isIn) expected = Outcome::Done;
        outcome = outcomeOf([&] { return tours.withdraw(number, ids[player]), true; });
        balancesAfter[player] += after.entries[player].fund + after.entries[player].fee;
        after.entries.erase(player);
        break;
      case 3:
        if (tour.isOpen && price > 0) expected = Outcome::Done;
        outcome = outcomeOf([&] { return tours.addToFund(number, cents(price)), true; });
        after.added += price;
        if (outcome == Outcome::Done) issued += price;
        break;
      case 4:
        if (upTo(1) != 0) {
          if (tour.isOpen) expected = Outcome::Done;
          outcome = outcomeOf([&] { return tours.callOff(number), true; });
          for (const auto& [each, entry] : tour.entries) balancesAfter[each] += entry.fund + entry.fee;
          if (outcome == Outcome::Done) issued -= tour.added;
        } else {  // the first one wins half, the rest is shared
          std::vector<TourBank::Prize> results;
          std::int64_t left = tour.fund();
          for (const auto& [each, entry] : tour.entries) {
            const bool isLast = results.size() + 1 == tour.entries.size();
            const std::int64_t prize = isLast ? left : left / 2;
            left -= prize;
            balancesAfter[each] += prize;
            results.push_back({ids[each], static_cast<std::uint32_t>(results.size() + 1), cents(prize)});
          }
          std::shuffle(results.begin(), results.end(), random);
          if (tour.isOpen && left == 0) expected = Outcome::Done;
          outcome = outcomeOf([&] { return tours.finish(number, results), true; });
          if (outcome == Outcome::Done) rake += tour.fees();
          if (outcome == Outcome::Done && !results.empty()) ++wins[tour.entries.begin()->first];
        }
        after.isOpen = false;
    }
    if (outcome == Outcome::Done) {
      tour = after;
      balances = balancesAfter;
    }
    ++outcomes[outcome];
    ASSERT_EQ(outcome, expected) << "step " << step;
    std::int64_t held = 0;
    for (const auto& [id, each] : all) {
      if (each.isOpen) held += each.fund() + each.fees();
    }
    const Audit audit = bank.audit();
    ASSERT_EQ(audit.difference(), kZeroMoney) << "step " << step;
    ASSERT_EQ(audit.tournaments, cents(held)) << "step " << step;
    ASSERT_EQ(audit.rake, cents(rake)) << "step " << step;
    ASSERT_EQ(audit.issued, cents(issued)) << "step " << step;
    if (tour.isOpen) {
      ASSERT_EQ(tours.fund(number), cents(tour.fund())) << "step " << step;
    }
    for (std::size_t i = 0; i < kPlayers; ++i) {
      ASSERT_EQ(bank.balance(ids[i]), cents(balances[i])) << "step " << step;
      ASSERT_EQ(tours.wins(ids[i]), wins[i]) << "step " << step;
    }
  }
  for (const Outcome outcome : {Outcome::Done, Outcome::Refused, Outcome::Thrown}) EXPECT_GT(outcomes[outcome], 100);
}

TEST(TourBank, RefusesResultsThatDoNotHold) {
  Bank bank(settings());
  TourBank tours(bank);
  const auto account = [&](const char* name) { return bank.openAccount(name, "secret", "", cents(1000)).value(); };
  const AccountID ann = account("Ann"), bob = account("Bob"), cy = account("Cy"), dan = account("Dan");
  const std::uint32_t tour = tours.open("Sunday");
  for (const AccountID player : {ann, bob, cy}) ASSERT_TRUE(tours.enter(tour, player, cents(500), cents(50)));
  const auto standings = bank.standings();
  const std::pair<std::vector<TourBank::Prize>, const char*> bad[] = {
      {{{ann, 1, cents(1000)}, {bob, 2, cents(499)}, {cy, 3, {}}}, "prizes of 14.99"},
      {{{ann, 1, cents(1000)}, {bob, 2, cents(501)}, {cy, 3, {}}}, "prizes of 15.01"},
      {{{ann, 1, cents(1600)}, {bob, 2, cents(-100)}, {cy, 3, {}}}, "prize"},
      {{{ann, 1, cents(1000)}, {bob, 2, cents(500)}}, "has no place"},
      {{{ann, 1, cents(1000)}, {bob, 2, cents(500)}, {dan, 3, {}}}, "not in it"},
      {{{ann, 1, cents(1000)}, {bob, 2, cents(500)}, {bob, 3, {}}}, "named twice"},
      {{{ann, 1, cents(1000)}, {bob, 1, cents(500)}, {cy, 3, {}}}, "UNIQUE"},
      {{{ann, 0, cents(1000)}, {bob, 1, cents(500)}, {cy, 2, {}}}, "place"},
      {{{ann, 1, cents(1000)}, {bob, 2, cents(500)}, {cy, 4, {}}}, "no place"},
      {{}, "has no place"},
  };
  for (const auto& [results, why] : bad) {
    const auto finish = [&, &wrong = results] { tours.finish(tour, wrong); };
    EXPECT_THAT(finish, ThrowsMessage<BankError>(HasSubstr(why)));
    EXPECT_EQ(bank.standings(), standings) << why;
    EXPECT_EQ(bank.audit().tournaments, cents(1650)) << why;
    EXPECT_EQ(tours.wins(ann), 0u) << why;
  }
  tours.finish(tour, {{cy, 3, {}}, {ann, 1, cents(1000)}, {bob, 2, cents(500)}});
  EXPECT_EQ(bank.balance(ann), cents(1450));
  EXPECT_EQ(bank.audit().rake, cents(150));
  EXPECT_EQ(tours.wins(ann), 1u);
  EXPECT_EQ(tours.wins(bob), 0u);
  EXPECT_THROW(tours.callOff(tour), BankError) << "the prizes are paid";
  EXPECT_THROW(tours.wins(AccountID{77}), BankError);
  EXPECT_THROW(tours.fund(77), BankError);
  EXPECT_THROW(tours.enter(tours.open("Monday"), AccountID{77}, cents(0), cents(0)), BankError);
  EXPECT_THROW(tours.enter(tours.open("Tuesday"), ann, cents(-1), cents(1)), BankError);
}

TEST(TourBank, PaysBackWhatAnEarlierServerLeftUnfinished) {
  const TempFolder folder;
  const BankSettings file = settings(folder.file("bank"));
  AccountID ann{}, bob{};
  std::uint32_t left = 0;
  {
    Bank bank(file);
    TourBank tours(bank);
    ann = bank.openAccount("Ann", "secret", "", cents(1000)).value();
    bob = bank.openAccount("Bob", "secret", "", cents(1000)).value();
    const std::uint32_t over = tours.open("Morning");
    ASSERT_TRUE(tours.enter(over, ann, cents(200), cents(20)));
    tours.finish(over, {{ann, 1, cents(200)}});
    left = tours.open("Evening");
    for (const AccountID player : {ann, bob}) ASSERT_TRUE(tours.enter(left, player, cents(300), cents(30)));
    ASSERT_TRUE(tours.buyChips(left, bob, cents(300)));
    tours.addToFund(left, cents(5000));
  }
  for (int start = 0; start < 2; ++start) {
    Bank bank(file);
    EXPECT_EQ(bank.audit().tournaments, cents(start == 0 ? 5960 : 0));
    TourBank tours(bank);
    EXPECT_EQ(bank.balance(ann), cents(980));
    EXPECT_EQ(bank.balance(bob), cents(1000));
    const Audit audit = bank.audit();
    EXPECT_EQ(audit.tournaments, kZeroMoney);
    EXPECT_EQ(audit.issued, cents(2000));
    EXPECT_EQ(audit.difference(), kZeroMoney);
    EXPECT_THROW(tours.buyChips(left, bob, cents(1)), BankError);
    EXPECT_EQ(tours.wins(ann), 1u);
    EXPECT_GT(tours.open("Night"), left);
  }
}

}  // namespace
}  // namespace poker::holdem

#include "BankOutcome.h"
#include "TempFolder.h"

#include <examples/holdem/server/bank/TourBank.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using test::Outcome;
using test::outcomeOf;
using testing::HasSubstr;
using testing::ThrowsMessage;

constexpr RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }

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
  Bank bank({":memory:", 1});
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
  Bank bank({":memory:", 1});
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
  const test::TempFolder folder;
  const BankSettings file{folder.file("bank"), 1};
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

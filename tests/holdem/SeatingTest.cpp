#include <examples/holdem/game/Deck.h>
#include <examples/holdem/server/tournament/Seating.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

using Generator = std::mt19937_64;

/// A tournament that is nothing but who sits where. Players go out at tables that play; tables are broken and balanced as
/// the functions say, and only between hands.
class Game {
 public:
  Game(std::size_t players, std::size_t seats, Generator& random) : seats_(seats), random_(random) {
    const auto drawn = drawTables(players, seats, std::ref(random));
    EXPECT_EQ(drawn.size(), (players + seats - 1) / seats);
    for (const auto& table : drawn) tables_[static_cast<std::uint32_t>(tables_.size() + 1)] = {table, true};
    for (std::size_t i = 0; i < players; ++i) in_.insert(i);
  }
  std::size_t players() const { return in_.size(); }
  std::size_t tables() const { return tables_.size(); }

  /// Some tables begin a hand, some end theirs, after which players may be out.
  void playOn() {
    for (auto& [number, table] : tables_) {
      if (table.isIdle) {
        table.isIdle = table.players.size() < 2 || drawBelow(random_, 3) == 0;
      } else if (drawBelow(random_, 2) == 0) {
        table.isIdle = true;
        while (table.players.size() > 1 && drawBelow(random_, 3) == 0) lose(table);
      }
    }
  }
  void endAllHands() {
    for (auto& [number, table] : tables_) table.isIdle = true;
  }
  /// Everything that can be done now.
  void arrange() {
    auto broken = tableToBreak(loads(), seats_);
    while (broken && tables_.at(*broken).isIdle) {
      const Table table = tables_.at(*broken);
      tables_.erase(*broken);
      for (const std::size_t player : table.players) {
        const auto fewest = std::min_element(tables_.begin(), tables_.end(), [](const auto& a, const auto& b) {
          return a.second.players.size() < b.second.players.size();
        });
        fewest->second.players.push_back(player);
      }
      check();
      broken = tableToBreak(loads(), seats_);
    }
    const auto balanced = [&] {
      auto all = loads();
      std::erase_if(all, [&](const TableLoad& load) { return load.table == broken; });
      return all;
    };
    std::size_t moves = 0;
    for (auto move = nextMove(balanced()); move; move = nextMove(balanced())) {
      Table& from = tables_.at(move->from);
      ASSERT_TRUE(from.isIdle);
      ASSERT_NE(move->to, broken);
      tables_.at(move->to).players.push_back(from.players.at(from.players.size() - 1));
      from.players.pop_back();
      check();
      ASSERT_LT(++moves, 1000u) << "players move for ever";
    }
  }
  /// What must hold at any time: nobody is lost, doubled or without a seat.
  void check() const {
    std::multiset<std::size_t> seated;
    for (const auto& [number, table] : tables_) {
      EXPECT_LE(table.players.size(), seats_);
      EXPECT_FALSE(table.players.empty());
      seated.insert(table.players.begin(), table.players.end());
    }
    ASSERT_TRUE(std::equal(seated.begin(), seated.end(), in_.begin(), in_.end()));
  }
  /// What must hold once everything was done with all tables idle.
  void checkArranged() const {
    EXPECT_EQ(tables_.size(), (in_.size() + seats_ - 1) / seats_);
    std::size_t fewest = seats_, most = 0;
    for (const auto& [number, table] : tables_) {
      fewest = std::min(fewest, table.players.size());
      most = std::max(most, table.players.size());
    }
    EXPECT_LE(most - fewest, 1u);
  }

 private:
  struct Table {
    std::vector<std::size_t> players;
    bool isIdle = true;
  };

  void lose(Table& table) {
    const auto place = static_cast<std::ptrdiff_t>(drawBelow(random_, table.players.size()));
    in_.erase(table.players[static_cast<std::size_t>(place)]);
    table.players.erase(table.players.begin() + place);
  }
  std::vector<TableLoad> loads() {
    std::vector<TableLoad> all;
    for (const auto& [number, table] : tables_) all.push_back({number, table.players.size(), table.isIdle});
    std::shuffle(all.begin(), all.end(), random_);
    return all;
  }

  std::size_t seats_;
  Generator& random_;
  std::map<std::uint32_t, Table> tables_;
  std::set<std::size_t> in_;
};

TEST(Seating, BringsAnyTournamentToItsLastTable) {
  Generator random(11);
  for (int round = 0; round < 300; ++round) {
    const std::size_t seats = 2 + drawBelow(random, 9);
    Game game(1 + drawBelow(random, 150), seats, random);
    game.check();
    game.checkArranged();
    for (int event = 0; game.players() > 1; ++event) {
      ASSERT_LT(event, 10'000) << "a table waits for ever";
      game.playOn();
      game.arrange();
      game.check();
      if (drawBelow(random, 4) == 0) {
        game.endAllHands();
        game.arrange();
        game.checkArranged();
      }
      if (HasFailure()) FAIL() << "round " << round << ", event " << event;
    }
    EXPECT_EQ(game.tables(), 1u);
  }
}

// The tables that the rules name, whatever the order in which they are listed.
TEST(Seating, TakesTheTablesThatTheRulesName) {
  std::vector<TableLoad> tables{{1, 5, true}, {2, 4, false}, {3, 4, true}, {4, 6, false}, {5, 5, true}};
  do {
    EXPECT_EQ(tableToBreak(tables, 6), 3u);
    EXPECT_EQ(tableToBreak(tables, 5), std::nullopt);
    EXPECT_FALSE(nextMove(tables));  // the one with two more is in a hand
    std::vector<TableLoad> between = tables;
    for (TableLoad& table : between) table.isIdle = true;
    const auto move = nextMove(between);
    ASSERT_TRUE(move);
    EXPECT_EQ(move->from, 4u);
    EXPECT_EQ(move->to, 2u);
  } while (std::next_permutation(tables.begin(), tables.end(),
                                 [](const TableLoad& a, const TableLoad& b) { return a.table < b.table; }));
  EXPECT_EQ(tableToBreak(std::vector<TableLoad>{{7, 1, true}}, 9), std::nullopt);
  EXPECT_FALSE(nextMove({}));
}

TEST(Seating, EverySeatIsAsLikelyForEverybody) {
  Generator random(12);
  constexpr std::size_t kPlayers = 7;
  constexpr int kDraws = 7000;
  std::map<std::pair<std::size_t, std::size_t>, int> seen;  // player and place, counted through the tables
  for (int draw = 0; draw < kDraws; ++draw) {
    std::size_t place = 0;
    for (const auto& table : drawTables(kPlayers, 4, std::ref(random))) {
      for (const std::size_t player : table) ++seen[{player, place++}];
    }
  }
  ASSERT_EQ(seen.size(), kPlayers * kPlayers);
  for (const auto& [playerAndPlace, times] : seen) EXPECT_NEAR(times, 1000, 200);  // nearly seven standard deviations
}

}  // namespace
}  // namespace poker::holdem

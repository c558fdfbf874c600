#include <examples/holdem/game/Deck.h>
#include <examples/holdem/server/tournament/TourBoard.h>
#include <hostkit/Decode.h>

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

constexpr std::uint32_t kTour = 77;

/// What there is to know of a tournament, as text: by "table 3", "player Ann" and the like.
using Picture = std::map<std::string, std::string>;

std::string keyOf(const MultiTourTableEntry& table) { return "table " + std::to_string(table.tableID); }
std::string keyOf(const MultiTourPlayerEntry& player) { return "player " + player.player.name; }
std::string keyOf(MultiTourText text) { return "text " + std::to_string(static_cast<int>(text)); }

void addPrize(PrizeSchemeInfoMap& prizes, std::int32_t place, RealMoneyType amount) {
  PrizeSchemeInfoRow row;
  row.place = place;
  row.amount = amount;
  prizes.add(row);
}

/// A client that makes its picture of whatever it is told.
class Viewer {
 public:
  Picture picture;
  TourBoard::Versions known;
  std::set<std::string> told;  // since the last forget(): the keys, removed ones included
  std::size_t commands = 0;
  std::size_t entries = 0;  // tables, players and prizes that were told, removed ones included

  void forget() {
    told.clear();
    commands = 0;
  }
  void hear(std::span<const std::uint8_t> frame) {
    constexpr std::size_t kLengthSlot = 4;
    const DecodeResult decoded = decodeCommand(frame.subspan(kLengthSlot), DecodePolicy::of(Side::Client));
    ASSERT_TRUE(decoded) << decoded.error.toString();
    ++commands;
    const PokerCommandI* command = decoded.command.get();
    if (const auto* all = dynamic_cast<const SrvMultiTourInitialize*>(command)) {
      EXPECT_EQ(all->tourID(), kTour);
      *this = Viewer();
      commands = 1;
      take(all->getTablesInfo());
      take(all->getPlayersInfo());
      take(all->getTextInfo());
      take(all->getPrizes(), all->prizeVersion());
      take(all->getFundInfo(), all->getFundVersion());
    } else if (const auto* tables = dynamic_cast<const SrvUpdateTables*>(command)) {
      EXPECT_EQ(tables->tourID(), kTour);
      take(tables->getTablesInfo());
    } else if (const auto* players = dynamic_cast<const SrvUpdatePlayers*>(command)) {
      EXPECT_EQ(players->tourID(), kTour);
      take(players->getPlayersInfo());
    } else if (const auto* text = dynamic_cast<const SrvUpdateText*>(command)) {
      EXPECT_EQ(text->tourID(), kTour);
      take(text->getTextInfo());
    } else if (const auto* prizes = dynamic_cast<const SrvUpdatePrizeDescr*>(command)) {
      EXPECT_EQ(prizes->tourID(), kTour);
      take(prizes->getPrizes(), prizes->prizeVersion());
    } else if (const auto* fund = dynamic_cast<const SrvUpdatePrizeFund*>(command)) {
      EXPECT_EQ(fund->tourID(), kTour);
      take(fund->getFundInfo(), fund->getVersion());
    } else {
      FAIL() << "something else was told";
    }
  }

 private:
  void set(const std::string& key, const std::string& value) {
    EXPECT_TRUE(told.insert(key).second) << key << " is told twice";
    picture[key] = value;
  }
  void remove(const std::string& key) {
    EXPECT_TRUE(told.insert(key).second) << key << " is told twice";
    picture.erase(key);
  }
  void take(const MultiTourTablesInfo& info) {
    for (const MultiTourTableEntry& table : info.tables) set(keyOf(table), table.toDbText());
    for (const std::uint32_t id : info.removedTables) remove("table " + std::to_string(id));
    entries += info.tables.size() + info.removedTables.size();
    known.tables = info.version;
  }
  void take(const MultiTourPlayersInfo& info) {
    for (const MultiTourPlayerEntry& player : info.players) set(keyOf(player), player.toDbText());
    for (const std::string& name : info.removedPlayers) remove("player " + name);
    entries += info.players.size() + info.removedPlayers.size();
    known.players = info.version;
  }
  void take(const MultiTourTextInfo& info) {
    for (const auto& [key, text] : info.texts) set(keyOf(key), text);
    known.text = info.version;
  }
  void take(const PrizeSchemeInfoMap& prizes, std::uint32_t version) {
    set("prizes", prizes.toDbText());
    entries += prizes.rows().size();
    known.prizes = version;
  }
  void take(const PrizeFundInfo& fund, std::uint32_t version) {
    set("fund", fund.toDbText());
    known.fund = version;
  }
};

/// A board, the truth beside it, and clients that look at it now and then.
class Scene {
 public:
  static constexpr std::size_t kViewers = 4;

  TourBoard board{kTour};
  Picture truth{{"prizes", PrizeSchemeInfoMap().toDbText()}, {"fund", PrizeFundInfo().toDbText()}};
  std::vector<Viewer> viewers{kViewers};

  explicit Scene(unsigned seed) : random_(seed) {}

  std::uint64_t below(std::uint64_t n) { return drawBelow(random_, n); }
  void change() {
    switch (below(8)) {
      case 0: {
        const auto id = static_cast<std::uint32_t>(1 + below(8));
        board.removeTable(id);
        return expect("table " + std::to_string(id), std::nullopt);
      }
      case 1: {
        const std::string name = "Player " + std::to_string(below(30));
        board.removePlayer(name);
        return expect("player " + name, std::nullopt);
      }
      case 2: {
        const auto key = static_cast<MultiTourText>(below(5));
        const std::string text = "Text " + std::to_string(below(3));
        board.setText(key, text);
        return expect(keyOf(key), text);
      }
      case 3: {
        PrizeSchemeInfoMap prizes;
        for (std::int32_t place = 1; place <= static_cast<std::int32_t>(below(3)); ++place) {
          addPrize(prizes, place, RealMoneyType::fromUnits(static_cast<std::int64_t>(below(2))));
        }
        prizes.setFinal(below(2) == 0);
        board.setPrizes(prizes);
        return expect("prizes", prizes.toDbText());
      }
      case 4: {
        PrizeFundInfo fund;
        fund.summary = std::to_string(below(2));
        fund.texts.set(static_cast<PrizeFundText>(below(2)), std::to_string(below(2)));
        board.setFund(fund);
        return expect("fund", fund.toDbText());
      }
      case 5: {
        MultiTourTableEntry table;
        table.tableID = static_cast<std::uint32_t>(1 + below(8));
        table.players = static_cast<std::uint32_t>(below(3));
        board.setTable(table);
        return expect(keyOf(table), table.toDbText());
      }
      default: {
        MultiTourPlayerEntry player;
        player.player.name = "Player " + std::to_string(below(30));
        player.tableID = static_cast<std::uint32_t>(below(3));
        board.setPlayer(player);
        return expect(keyOf(player), player.toDbText());
      }
    }
  }
  void look(std::size_t i) {
    Viewer& viewer = viewers[i];
    viewer.forget();
    bool isTold = false;
    EXPECT_TRUE(board.knows(viewer.known));
    const std::size_t changes = board.changes(viewer.known);
    const std::size_t before = viewer.entries;
    outbox_.run([&] { isTold = board.tellChanges(outbox_, idOf(i), viewer.known); });
    EXPECT_EQ(viewer.entries - before, changes);
    EXPECT_EQ(viewer.told, changed_[i]);
    EXPECT_EQ(isTold, !changed_[i].empty());
    check(i);
    // There is nothing left to tell.
    outbox_.run([&] { isTold = board.tellChanges(outbox_, idOf(i), viewer.known); });
    EXPECT_FALSE(isTold);
    EXPECT_EQ(viewer.told, changed_[i]);
    changed_[i].clear();
  }
  void lookAtAll(std::size_t i) {
    outbox_.run([&] { board.tellAll(outbox_, idOf(i)); });
    EXPECT_EQ(viewers[i].commands, 1u);
    check(i);
    changed_[i].clear();
  }
  /// With versions that are not the board's.
  void lookAsStranger(std::size_t i) {
    const TourBoard::Versions now = board.versions();
    const auto strange = [&](std::uint32_t version) {
      const std::uint32_t choices[] = {0, version + 1, version + 1000, UINT32_MAX};
      return choices[below(std::size(choices))];
    };
    viewers[i] = Viewer();
    viewers[i].known = {strange(now.tables), strange(now.players), strange(now.text), strange(now.prizes),
                        strange(now.fund)};
    EXPECT_FALSE(board.knows(viewers[i].known));
    outbox_.run([&] { EXPECT_TRUE(board.tellChanges(outbox_, idOf(i), viewers[i].known)); });
    EXPECT_EQ(viewers[i].commands, 5u);
    std::set<std::string> all;
    for (const auto& [key, value] : truth) all.insert(key);
    EXPECT_EQ(viewers[i].told, all);  // and nothing that is gone
    check(i);
    changed_[i].clear();
  }

 private:
  static ConnectionID idOf(std::size_t viewer) { return ConnectionID(static_cast<std::int32_t>(viewer + 1)); }

  void expect(const std::string& key, const std::optional<std::string>& value) {
    const auto place = truth.find(key);
    const bool isSame = value ? place != truth.end() && place->second == *value : place == truth.end();
    if (isSame) return;
    if (value) {
      truth[key] = *value;
    } else {
      truth.erase(place);
    }
    for (auto& keys : changed_) keys.insert(key);
  }
  void check(std::size_t i) {
    EXPECT_EQ(viewers[i].picture, truth);
    EXPECT_EQ(viewers[i].known, board.versions());
  }

  std::mt19937_64 random_;
  std::set<std::string> changed_[kViewers];  // what each has to be told
  Outbox outbox_{[this](const ConnectionID& to, std::span<const std::uint8_t> frame) {
    viewers[static_cast<std::size_t>(to.value() - 1)].hear(frame);
  }};
};

TEST(TourBoard, TellsEachClientJustWhatIsNewToIt) {
  Scene scene(21);
  for (std::size_t i = 0; i < Scene::kViewers; ++i) scene.lookAsStranger(i);  // at an empty board
  EXPECT_EQ(scene.board.versions(), (TourBoard::Versions{1, 1, 1, 1, 1}));
  for (int round = 0; round < 4000; ++round) {
    for (std::uint64_t changes = scene.below(6); changes != 0; --changes) scene.change();
    const std::size_t viewer = scene.below(Scene::kViewers);
    switch (scene.below(12)) {
      case 0:
        scene.lookAtAll(viewer);
        break;
      case 1:
        scene.lookAsStranger(viewer);
        break;
      default:
        scene.look(viewer);
    }
    if (HasFailure()) FAIL() << "round " << round;
  }
}

/// Each of another field of a record.
template <class Record>
using Changes = std::vector<std::function<void(Record&)>>;

TEST(TourBoard, SeesEachFieldChange) {
  TourBoard board(kTour);
  MultiTourTableEntry table;
  board.setTable(table);
  const Changes<MultiTourTableEntry> ofTable{[](auto& t) { t.players = 9; }, [](auto& t) { t.smallestStack += 1; },
                                             [](auto& t) { t.largestStack += 1; }, [](auto& t) { t.name = "River"; }};
  std::uint32_t version = board.versions().tables;
  for (const auto& change : ofTable) {
    change(table);
    board.setTable(table);
    board.setTable(table);
    EXPECT_EQ(board.versions().tables, ++version);
  }
  MultiTourPlayerEntry player;
  board.setPlayer(player);
  const Changes<MultiTourPlayerEntry> ofPlayer{[](auto& p) { p.tableID = 3; }, [](auto& p) { p.player.playerID = 8; },
                                               [](auto& p) { p.player.city = "Reno"; }};
  version = board.versions().players;
  for (const auto& change : ofPlayer) {
    change(player);
    board.setPlayer(player);
    board.setPlayer(player);
    EXPECT_EQ(board.versions().players, ++version);
  }
  PrizeSchemeInfoMap prizes;
  version = board.versions().prizes;
  for (const std::int32_t place : {1, 1, 2}) {
    addPrize(prizes, place, RealMoneyType::fromUnits(place));
    board.setPrizes(prizes);
    board.setPrizes(prizes);
    EXPECT_EQ(board.versions().prizes, ++version);
  }
}

}  // namespace
}  // namespace poker::holdem

// What the server tells of its tournaments, and what its clients make of that.

#include <examples/holdem/client/tournament/TourPicture.h>
#include <examples/holdem/game/Deck.h>
#include <examples/holdem/server/tournament/TourBoard.h>
#include <examples/holdem/server/tournament/TourList.h>
#include <hostkit/Decode.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kTour = 77;

/// What there is to know of a tournament, as text: by "table 3", "player Ann" and the like.
using Facts = std::map<std::string, std::string>;

std::string keyOf(std::uint32_t tableID) { return "table " + std::to_string(tableID); }
std::string keyOf(const std::string& player) { return "player " + player; }
std::string keyOf(MultiTourText text) { return "text " + std::to_string(static_cast<int>(text)); }

Facts factsOf(const TourPicture& picture) {
  Facts all{{"prizes", picture.prizes().toDbText()}, {"fund", picture.fund().toDbText()}};
  for (const auto& [id, table] : picture.tables()) all[keyOf(id)] = table.toDbText();
  for (const auto& [name, player] : picture.players()) all[keyOf(name)] = player.toDbText();
  for (const auto& [key, text] : picture.texts()) all[keyOf(key)] = text;
  return all;
}

/// A client with its picture, and what it was told.
class Viewer {
 public:
  using Frame = std::vector<std::uint8_t>;

  TourPicture picture{kTour};
  std::vector<Frame> frames;
  std::set<std::string> told;  // since the last forget(): the keys, removed ones included
  std::size_t entries = 0;     // tables, players and prizes among them
  std::size_t commands = 0;

  void forget() {
    told.clear();
    entries = commands = 0;
  }
  void hear(std::span<const std::uint8_t> frame) {
    frames.emplace_back(frame.begin(), frame.end());
    ++commands;
    constexpr std::size_t kLengthSlot = 4;
    const DecodeResult decoded = decodeCommand(frame.subspan(kLengthSlot), DecodePolicy::of(Side::Client));
    ASSERT_TRUE(decoded) << decoded.error.toString();
    const PokerCommandI& command = *decoded.command;
    ASSERT_TRUE(takes<SrvMultiTourInitialize>(command) || takes<SrvUpdateTables>(command) ||
                takes<SrvUpdatePlayers>(command) || takes<SrvUpdateText>(command) ||
                takes<SrvUpdatePrizeDescr>(command) || takes<SrvUpdatePrizeFund>(command));
  }
  /// What it would ask with.
  TourBoard::Versions known() {
    picture.askForChanges(*this);
    return known_;
  }
  template <class T>
  void send(std::uint32_t tables, std::uint32_t players, std::uint32_t text, std::uint32_t tour, std::uint32_t prizes,
            std::uint32_t fund) {
    EXPECT_EQ(tour, kTour);
    known_ = {tables, players, text, prizes, fund};
  }

 private:
  template <class T>
  bool takes(const PokerCommandI& command) {
    const T* own = dynamic_cast<const T*>(&command);
    if (own == nullptr) return false;
    note(*own);
    picture.apply(*own);
    return true;
  }
  void add(const std::string& key) { EXPECT_TRUE(told.insert(key).second) << key << " is told twice"; }
  void addEntry(const std::string& key) {
    add(key);
    ++entries;
  }
  void note(const SrvMultiTourInitialize&) {}
  void note(const SrvUpdateTables& update) {
    for (const MultiTourTableEntry& table : update.getTablesInfo().tables) addEntry(keyOf(table.tableID));
    for (const std::uint32_t id : update.getTablesInfo().removedTables) addEntry(keyOf(id));
  }
  void note(const SrvUpdatePlayers& update) {
    for (const MultiTourPlayerEntry& player : update.getPlayersInfo().players) addEntry(keyOf(player.player.name));
    for (const std::string& name : update.getPlayersInfo().removedPlayers) addEntry(keyOf(name));
  }
  void note(const SrvUpdateText& update) {
    for (const auto& [key, text] : update.getTextInfo().texts) add(keyOf(key));
  }
  void note(const SrvUpdatePrizeDescr& update) {
    add("prizes");
    entries += update.getPrizes().rows().size();
  }
  void note(const SrvUpdatePrizeFund&) { add("fund"); }

  TourBoard::Versions known_;
};

/// A board, the truth beside it, and clients that look at it now and then.
class Scene {
 public:
  static constexpr std::size_t kViewers = 4;

  TourBoard board{kTour};
  Facts truth = factsOf(TourPicture(kTour));

  explicit Scene(unsigned seed) : random_(seed) {}

  std::uint32_t below(std::uint32_t n) { return static_cast<std::uint32_t>(drawBelow(random_, n)); }
  RealMoneyType fewUnits() { return RealMoneyType::fromUnits(below(2)); }
  void change() {
    const std::uint32_t id = 1 + below(8);
    const std::string name = "Player " + std::to_string(below(30));
    switch (below(8)) {
      case 0:
        board.removeTable(id);
        return expect(keyOf(id), std::nullopt);
      case 1:
        board.removePlayer(name);
        return expect(keyOf(name), std::nullopt);
      case 2: {
        const auto key = static_cast<MultiTourText>(below(5));
        const std::string text = "Text " + std::to_string(below(3));
        board.setText(key, text);
        return expect(keyOf(key), text);
      }
      case 3: {
        PrizeSchemeInfoMap prizes;
        PrizeSchemeInfoRow row;
        for (const std::uint32_t last = below(3); row.place < static_cast<std::int32_t>(last);) {
          ++row.place;
          row.amount = fewUnits();
          prizes.add(row);
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
        table.tableID = id;
        table.name = "Table " + std::to_string(below(2));
        table.players = below(2);
        table.smallestStack = fewUnits();
        table.largestStack = fewUnits();
        board.setTable(table);
        return expect(keyOf(id), table.toDbText());
      }
      default: {
        MultiTourPlayerEntry player;
        player.player.name = name;
        player.player.playerID = below(2);
        player.player.city = below(2) == 0 ? "Reno" : "";
        player.tableID = below(2);
        board.setPlayer(player);
        return expect(keyOf(name), player.toDbText());
      }
    }
  }
  void look(std::size_t i) {
    Viewer& viewer = viewers_[i];
    const TourBoard::Versions known = viewer.known();
    EXPECT_TRUE(board.knows(known));
    const std::size_t changes = board.changes(known);
    EXPECT_EQ(viewer.picture == whole(), factsOf(viewer.picture) == truth);
    EXPECT_EQ(tellChanges(i, known), !changed_[i].empty());
    EXPECT_EQ(viewer.entries, changes);
    EXPECT_EQ(viewer.told, changed_[i]);
    check(i);
    EXPECT_FALSE(tellChanges(i, viewer.known())) << "there is nothing left to tell";
    // What is late changes nothing.
    for (int frames = 0; frames < 3; ++frames) {
      const auto late = viewer.frames[below(static_cast<std::uint32_t>(viewer.frames.size()))];
      viewer.forget();
      viewer.hear(late);
    }
    check(i);
  }
  void lookAtAll(std::size_t i) {
    viewers_[i].forget();
    outbox_.run([&] { board.tellAll(outbox_, idOf(i)); });
    EXPECT_EQ(viewers_[i].commands, 1u);
    EXPECT_TRUE(viewers_[i].picture.isWhole());
    check(i);
  }
  /// With versions that are not the board's.
  void lookAsStranger(std::size_t i) {
    const TourBoard::Versions now = board.versions();
    const auto strange = [&](std::uint32_t version) {
      const std::uint32_t choices[] = {0, version + 1, version + 1000, UINT32_MAX};
      return choices[below(4)];
    };
    const TourBoard::Versions known{strange(now.tables), strange(now.players), strange(now.text), strange(now.prizes),
                                    strange(now.fund)};
    viewers_[i] = Viewer();
    EXPECT_FALSE(board.knows(known));
    EXPECT_TRUE(tellChanges(i, known));
    EXPECT_EQ(viewers_[i].commands, 5u);
    std::set<std::string> all;
    for (const auto& [key, value] : truth) all.insert(key);
    EXPECT_EQ(viewers_[i].told, all);  // and nothing that is gone
    check(i);
  }

 private:
  static ConnectionID idOf(std::size_t viewer) { return ConnectionID(static_cast<std::int32_t>(viewer + 1)); }

  bool tellChanges(std::size_t i, const TourBoard::Versions& known) {
    bool isTold = false;
    viewers_[i].forget();
    outbox_.run([&] { isTold = board.tellChanges(outbox_, idOf(i), known); });
    return isTold;
  }
  const TourPicture& whole() {
    viewers_[kViewers] = Viewer();
    outbox_.run([&] { board.tellAll(outbox_, idOf(kViewers)); });
    return viewers_[kViewers].picture;
  }
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
    EXPECT_EQ(factsOf(viewers_[i].picture), truth);
    EXPECT_EQ(viewers_[i].known(), board.versions());
    changed_[i].clear();
  }

  std::mt19937_64 random_;
  std::vector<Viewer> viewers_{kViewers + 1};  // the last one always comes anew
  std::set<std::string> changed_[kViewers];    // what each has to be told
  Outbox outbox_{[this](const ConnectionID& to, std::span<const std::uint8_t> frame) {
    viewers_[static_cast<std::size_t>(to.value() - 1)].hear(frame);
  }};
};

TEST(TourPicture, IsTheBoardThoughItIsToldOnlyWhatIsNew) {
  Scene scene(21);
  for (std::size_t i = 0; i < Scene::kViewers; ++i) scene.lookAsStranger(i);  // at an empty board
  EXPECT_EQ(scene.board.versions(), (TourBoard::Versions{1, 1, 1, 1, 1}));
  for (int round = 0; round < 4000; ++round) {
    for (std::uint32_t changes = scene.below(6); changes != 0; --changes) scene.change();
    const std::size_t viewer = scene.below(Scene::kViewers);
    const std::uint32_t how = scene.below(12);
    if (how == 0) scene.lookAtAll(viewer);
    if (how == 1) scene.lookAsStranger(viewer);
    if (how > 1) scene.look(viewer);
    if (HasFailure()) FAIL() << "round " << round;
  }
}

TEST(TourPicture, TakesNothingOfAnotherTournament) {
  TourBoard other(kTour + 1);
  other.setTable(MultiTourTableEntry());
  other.setPlayer(MultiTourPlayerEntry());
  other.setText(MultiTourText::Title, "Sunday");
  Viewer viewer;
  Outbox outbox([&](const ConnectionID&, std::span<const std::uint8_t> frame) { viewer.hear(frame); });
  outbox.run([&] {
    other.tellAll(outbox, ConnectionID(1));
    other.tellChanges(outbox, ConnectionID(1), {});
  });
  EXPECT_EQ(viewer.commands, 6u);
  EXPECT_EQ(factsOf(viewer.picture), factsOf(TourPicture(kTour)));
  EXPECT_EQ(viewer.known(), TourBoard::Versions());
  EXPECT_FALSE(viewer.picture.isWhole());
}

TEST(TourListPicture, IsTheListThoughItIsToldOnlyWhatIsNew) {
  using TOUR_NAMES::TourStatus;
  using TOUR_NAMES::TourType;
  // The numbers of a block are nearly used up; the next block is another server's.
  std::uint32_t reserved = 5001;
  VersionNumbers numbers([&](std::uint32_t count) { return std::exchange(reserved, reserved + 3 * count); });
  for (std::uint32_t i = 5; i < VersionNumbers::kBlock; ++i) {
    numbers.forChange();
    numbers.tell();
  }
  TourList list(TourType::SingleTable, numbers);
  TourListPicture picture(TourType::SingleTable);
  TournamentsInfo told;
  std::vector<std::uint32_t> ids;
  const auto tellSince = [&](std::uint32_t version) {
    list.changesSince(version, told);
    ids.clear();
    for (const TourListEntry& each : told.tournaments) ids.push_back(each.tournamentID);
  };
  const auto tell = [&] {
    tellSince(picture.version());
    picture.apply(*make<SrvTournamentsInfo>(told));
  };
  tell();
  EXPECT_EQ(told.type, TourType::SingleTable);
  const std::uint32_t first = picture.version();
  EXPECT_THAT(ids, IsEmpty());

  TourListEntry line;
  for (const TourStatus status :
       {TourStatus::Announced, TourStatus::Registering, TourStatus::Registering, TourStatus::Prestarted,
        TourStatus::Started, TourStatus::Suspended, TourStatus::Finished, TourStatus::Finished}) {
    const std::uint32_t before = picture.version();
    ++line.tournamentID;
    line.status = status;
    line.version = 1000;  // of no meaning here
    list.set(line);
    list.set(line);
    tell();
    EXPECT_THAT(ids, ElementsAre(line.tournamentID));
    EXPECT_GT(picture.version(), before);
    EXPECT_EQ(picture.tournament(line.tournamentID)->version, picture.version());
  }
  EXPECT_GT(picture.version(), 5001 + VersionNumbers::kBlock);
  EXPECT_THAT((std::vector{told.announced, told.registering, told.running, told.finished}), ElementsAre(1, 2, 3, 2));

  // What is gone is told to who may have it, until it comes again.
  const TournamentsInfo before = told;
  for (const std::uint32_t id : {7u, 3u, 99u}) list.remove(id);
  line.players = 9;
  list.set(line);
  tell();
  EXPECT_THAT(ids, ElementsAre(8u));
  EXPECT_THAT(told.removedTournaments, ElementsAre(3u, 7u));
  EXPECT_EQ(told.registering + told.finished, 2);
  EXPECT_EQ(picture.tournament(8)->players, 9);
  picture.apply(*make<SrvTournamentsInfo>(before));  // late
  told.type = TourType::MultiTable;
  told.version += 1;
  told.removedTournaments = {8};
  picture.apply(*make<SrvTournamentsInfo>(told));
  EXPECT_EQ(picture.tournaments().size(), 6u);
  EXPECT_EQ(picture.tournament(3), nullptr);
  EXPECT_EQ(picture.tournament(8)->players, 9);
  line.tournamentID = 3;
  list.set(line);
  tellSince(before.version);
  EXPECT_THAT(ids, ElementsAre(3u, 8u));
  EXPECT_THAT(told.removedTournaments, ElementsAre(7u));
  for (const std::uint32_t strange : {0u, first - 1, told.version + 1, UINT32_MAX}) {
    tellSince(strange);
    EXPECT_EQ(ids.size(), 7u);
    EXPECT_THAT(told.removedTournaments, IsEmpty());
  }
}

}  // namespace
}  // namespace poker::holdem

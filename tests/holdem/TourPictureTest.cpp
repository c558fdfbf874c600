#include <examples/holdem/client/tournament/TourPicture.h>
#include <examples/holdem/game/Deck.h>
#include <hostkit/CommandHandle.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

constexpr std::uint32_t kTour = 7;
constexpr MultiTourText kTexts[] = {MultiTourText::Title, MultiTourText::Rules, MultiTourText::News};

/// What there is of a tournament at one version of all of its parts.
struct Model {
  std::map<std::uint32_t, MultiTourTableEntry> tables;
  std::map<std::string, MultiTourPlayerEntry> players;
  std::map<MultiTourText, std::string> texts;
  PrizeSchemeInfoMap prizes;
  PrizeFundInfo fund;
  std::uint32_t version = 1;

  void change(std::mt19937_64& random) {
    const auto below = [&](std::uint64_t n) { return static_cast<std::uint32_t>(drawBelow(random, n)); };
    ++version;
    for (std::uint32_t times = below(4); times > 0; --times) {
      const std::uint32_t number = 1 + below(6);
      if (below(3) == 0) {
        tables.erase(number);
      } else {
        MultiTourTableEntry& table = tables[number];
        table.tableID = number;
        table.name = "Table";
        table.players = below(3);
        table.largestStack = RealMoneyType::fromUnits(below(2));
      }
      const std::string name = "Player " + std::to_string(below(20));
      if (below(3) == 0) {
        players.erase(name);
      } else {
        players[name].player.name = name;
        players[name].tableID = below(3);
      }
    }
    if (below(3) == 0) texts[kTexts[below(3)]] = std::to_string(below(100));
    if (below(3) == 0) {
      prizes.clear();
      for (std::int32_t place = 1; place < 4; ++place) {
        PrizeSchemeInfoRow row;
        row.place = place;
        row.amount = RealMoneyType::fromUnits(below(50));
        prizes.add(row);
      }
      prizes.setFinal(below(2) == 0);
    }
    if (below(3) == 0) fund.summary = std::to_string(below(100));
    if (below(3) == 0) fund.texts.set(PrizeFundText::Total, std::to_string(below(100)));
  }

  // What is different from `before`; everything when that is empty.

  MultiTourTablesInfo tablesSince(const Model& before) const {
    MultiTourTablesInfo info;
    for (const auto& [number, table] : tables) {
      const auto old = before.tables.find(number);
      const bool isSame = old != before.tables.end() && old->second.players == table.players &&
                          old->second.largestStack == table.largestStack;
      if (!isSame) info.tables.push_back(table);
    }
    for (const auto& [number, table] : before.tables) {
      if (!tables.contains(number)) info.removedTables.insert(number);
    }
    info.version = version;
    return info;
  }
  MultiTourPlayersInfo playersSince(const Model& before) const {
    MultiTourPlayersInfo info;
    for (const auto& [name, player] : players) {
      const auto old = before.players.find(name);
      if (old == before.players.end() || old->second.tableID != player.tableID) info.players.push_back(player);
    }
    for (const auto& [name, player] : before.players) {
      if (!players.contains(name)) info.removedPlayers.insert(name);
    }
    info.version = version;
    return info;
  }
  MultiTourTextInfo textSince(const Model& before) const {
    MultiTourTextInfo info;
    for (const auto& [key, text] : texts) {
      const auto old = before.texts.find(key);
      if (old == before.texts.end() || old->second != text) info.texts.set(key, text);
    }
    info.version = version;
    return info;
  }

  void tellChanges(TourPicture& picture, const Model& before, std::uint32_t tour = kTour) const {
    picture.apply(*make<SrvUpdateTables>(tablesSince(before), tour));
    picture.apply(*make<SrvUpdatePlayers>(playersSince(before), tour));
    picture.apply(*make<SrvUpdateText>(textSince(before), tour));
    picture.apply(*make<SrvUpdatePrizeDescr>(prizes, tour, version));
    picture.apply(*make<SrvUpdatePrizeFund>(version, fund, tour));
  }
  void tellAll(TourPicture& picture, std::uint32_t tour = kTour) const {
    const Model nothing;
    picture.apply(*make<SrvMultiTourInitialize>(tablesSince(nothing), playersSince(nothing), textSince(nothing), tour,
                                                prizes, fund, version, version));
  }
  TourPicture picture() const {
    TourPicture whole(kTour);
    tellAll(whole);
    return whole;
  }
};

/// What a picture asks with.
struct Question {
  std::vector<std::uint32_t> numbers;
  template <class T>
  void send(std::uint32_t tables, std::uint32_t players, std::uint32_t text, std::uint32_t tour, std::uint32_t prizes,
            std::uint32_t fund) {
    numbers = {tables, players, text, tour, prizes, fund};
  }
};

TEST(TourPicture, IsTheSameFromItsChangesAsWhenItIsToldWhole) {
  std::mt19937_64 random(1);
  std::vector<Model> history(1);
  TourPicture picture(kTour);
  EXPECT_FALSE(picture.isWhole());
  history[0].change(random);
  history[0].tellAll(picture);
  EXPECT_TRUE(picture.isWhole());
  std::size_t told = 0;
  for (int round = 0; round < 500; ++round) {
    history.push_back(history.back());
    history.back().change(random);
    if (drawBelow(random, 3) == 0) continue;  // it did not ask each time
    history.back().tellChanges(picture, history[told]);
    told = history.size() - 1;
    ASSERT_EQ(picture, history.back().picture()) << round;
    // What is late, or of another tournament, is no news.
    const std::size_t old = drawBelow(random, told);
    history[old].tellChanges(picture, Model());
    history[old].tellAll(picture);
    Model other = history[old];
    other.version = 1'000'000;
    other.tellChanges(picture, Model(), kTour + 1);
    other.tellAll(picture, kTour + 1);
    ASSERT_EQ(picture, history.back().picture()) << round;
  }
  Question question;
  picture.askForChanges(question);
  const std::uint32_t version = history[told].version;
  EXPECT_EQ(question.numbers, (std::vector<std::uint32_t>{version, version, version, kTour, version, version}));
}

TEST(TourPicture, DiffersInEachPart) {
  Model one;
  std::mt19937_64 random(2);
  for (int i = 0; i < 20; ++i) one.change(random);
  const auto differs = [&](const auto& change) {
    Model other = one;
    change(other);
    return !(other.picture() == one.picture());
  };
  EXPECT_FALSE(differs([](Model& model) { ++model.version; }));
  EXPECT_TRUE(differs([](Model& model) { model.tables.begin()->second.smallestStack += RealMoneyType::fromUnits(1); }));
  EXPECT_TRUE(differs([](Model& model) { model.players.erase(model.players.begin()); }));
  EXPECT_TRUE(differs([](Model& model) { model.texts[MultiTourText::Blinds] = "1  10/20"; }));
  EXPECT_TRUE(differs([](Model& model) { model.prizes.setFinal(!model.prizes.isFinal()); }));
  EXPECT_TRUE(differs([](Model& model) { model.fund.summary += '!'; }));
}

TEST(TourPicture, NewerTextsLeaveTheOthers) {
  TourPicture picture(kTour);
  MultiTourTextInfo texts;
  texts.texts = {{MultiTourText::Title, "Sunday"}, {MultiTourText::News, "Soon"}};
  texts.version = 4;
  picture.apply(*make<SrvUpdateText>(texts, kTour));
  texts.texts = {{MultiTourText::News, "Now"}};
  texts.version = 5;
  picture.apply(*make<SrvUpdateText>(texts, kTour));
  EXPECT_EQ(picture.text(MultiTourText::Title), "Sunday");
  EXPECT_EQ(picture.text(MultiTourText::News), "Now");
  EXPECT_EQ(picture.text(MultiTourText::Rules), "");
}

TEST(TourListPicture, ChangesAndRemovalsTakeHoldAndWhatIsOldOrOfAnotherKindDoesNot) {
  using enum TOUR_NAMES::TourType;
  const auto entry = [](std::uint32_t number, std::uint16_t players) {
    TourListEntry tournament;
    tournament.tournamentID = number;
    tournament.players = players;
    return tournament;
  };
  TournamentsInfo info;
  info.type = MultiTable;
  info.version = 5;
  info.tournaments = {entry(3, 1), entry(1, 2)};
  TourListPicture picture(MultiTable);
  picture.apply(*make<SrvTournamentsInfo>(info));
  TournamentsInfo update = info;
  update.version = 6;
  update.tournaments = {entry(1, 9), entry(8, 0)};
  update.removedTournaments = {3};
  picture.apply(*make<SrvTournamentsInfo>(update));
  picture.apply(*make<SrvTournamentsInfo>(info));
  update.version = 7;
  update.type = SingleTable;
  update.removedTournaments = {1, 8};
  picture.apply(*make<SrvTournamentsInfo>(update));
  EXPECT_EQ(picture.version(), 6u);
  ASSERT_EQ(picture.tournaments().size(), 2u);
  ASSERT_NE(picture.tournament(1), nullptr);
  EXPECT_EQ(picture.tournament(1)->players, 9);
  EXPECT_EQ(picture.tournament(3), nullptr);
}

}  // namespace
}  // namespace poker::holdem

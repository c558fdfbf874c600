// The audit against sound hands with one fault each: it must name that one, where it stands, and nothing else.

#include "Kept.h"

#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <hostkit/Encode.h>
#include <hostkit/StreamFramer.h>
#include <tools/cmdproc/input/DecodeFrame.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace poker {
namespace {

using holdem::Bot;
using holdem::PlayerClient;
using holdem::PlayerEnd;
using holdem::PlayerEvents;
using holdem::PlayerSettings;
using holdem::test::Place;
using holdem::test::quickServer;
using test::Audited;
using test::KeptFrame;
using testing::HasSubstr;

constexpr RealMoneyType kOne = RealMoneyType::fromUnits(1);
constexpr RealMoneyType kCent = RealMoneyType::fromHundredths(1);

struct Frame : KeptFrame {
  std::uint64_t hand = 0;
  bool isPlanted = false;

  template <class T>
  bool is() const {
    return bytes[kLengthSlot] == CommandInfo<T>::code &&
           bytes[kLengthSlot + 1] == static_cast<std::uint8_t>(CommandInfo<T>::family);
  }
  template <class T>
  CommandHandle<T> as() const {
    DecodeResult decoded = cmdproc::decodeFrame(bytes);
    return CommandHandle<T>(static_cast<T&>(*decoded.command.detach()));
  }
  template <class T, class... Args>
  void become(Args&&... args) {
    put(*make<T>(std::forward<Args>(args)...));
  }
  void put(const PokerCommandI& command) {
    SerializeCommandBuf buffer(256);
    const auto frame = encodeCommand(command, buffer);
    bytes.assign(frame.begin(), frame.end());
    isPlanted = true;
  }
};
using Frames = std::vector<Frame>;

/// Frames of a game of five and one who looks on, and the hands in it as they were played.
struct Game final : holdem::FrameObserver, PlayerEvents {
  Frames frames;
  std::map<std::uint64_t, HandStory> hands;
  std::string onlooker;  // its connection

  Game() {
    constexpr unsigned kPlayers = 5;
    Place place(quickServer(400, kPlayers), this);
    PlayerSettings looksOn = place.bot(20).player;
    looksOn.sitsDown = false;
    PlayerClient client(place.context, looksOn, *this);
    client.start();
    EXPECT_TRUE(place.runUntil([&] { return client.isAtTable(); }));
    onlooker = frames.back().connection;
    std::vector<std::unique_ptr<Bot>> bots;
    for (unsigned i = 0; i < kPlayers; ++i) {
      bots.push_back(std::make_unique<Bot>(place.context, place.bot(i), [](PlayerEnd, std::string_view) {}));
      bots.back()->start();
    }
    EXPECT_TRUE(place.runUntil([&] { return place.ended; }));
    Audited audited;
    audited.onHand = [&](const RecordedHand& hand) {
      if (hand.isWhole()) hands[hand.number()] = hand.story();
    };
    for (const Frame& frame : frames) audited.take(frame.view());
    audited.finish();
    EXPECT_EQ(audited.lines(), "");
  }
  void onFrame(const CapturedFrame& frame, const FrameEnds&) override {
    Frame kept;
    kept.bytes.assign(frame.bytes.begin(), frame.bytes.end());
    kept.number = frame.number;
    kept.time = *frame.time;
    kept.direction = *frame.direction;
    kept.connection = frame.connection;
    kept.table = frame.table;
    kept.hand = frame.hand;
    frames.push_back(std::move(kept));
  }
  static const Game& get() {
    static const Game game;
    return game;
  }
};

// What to look for in a hand.

using Wanted = std::function<bool(const HandStory&)>;

bool hasFlop(const HandStory& hand) { return hand.rounds.size() > 1; }
bool hasShowDown(const HandStory& hand) { return hand.finalists.size() > 1 && hand.rounds.size() == 4; }
std::size_t winners(const HandStory& hand) { return hand.pots.at(0).wins.size(); }
bool isShown(const HandStory::Player& player) {
  return std::all_of(player.cards.begin(), player.cards.end(),
                     [](const Card& card) { return card.visibility() == Card::Visibility::Shown; });
}
bool hasAllIn(const HandStory& hand) {
  for (const auto& round : hand.rounds) {
    for (const auto& action : round.actions) {
      if (action.allIn) return true;
    }
  }
  return false;
}
const HandStory::Action* findAction(const HandStory& hand, UserAction wanted, std::size_t fromRound = 0) {
  for (std::size_t i = fromRound; i < hand.rounds.size(); ++i) {
    for (const HandStory::Action& action : hand.rounds[i].actions) {
      if (action.action == wanted) return &action;
    }
  }
  return nullptr;
}

/// A copy of the game to plant a fault into, up to a few hands behind the one that gets it.
class Plant {
 public:
  Frames frames;
  HandStory story;
  std::uint64_t hand = 0;

  explicit Plant(const Wanted& wanted) {
    const Game& game = Game::get();
    for (const auto& [number, played] : game.hands) {
      if (hand == 0 && number > 3 && played.finalists.size() <= 3 && wanted(played)) {
        hand = number;
        story = played;
      }
    }
    EXPECT_NE(hand, 0u) << "no such hand was played";
    for (const Frame& frame : game.frames) {
      if (frame.hand > hand + 2) break;
      frames.push_back(frame);
    }
  }

  /// Where frames of class T of the hand stand that meet the condition.
  template <class T>
  std::vector<std::size_t> find(const std::function<bool(const T&)>& meets = nullptr) const {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < frames.size(); ++i) {
      if (frames[i].hand == hand && frames[i].is<T>() && (!meets || meets(*frames[i].as<T>()))) found.push_back(i);
    }
    return found;
  }
  /// The first of them, to each connection.
  template <class T>
  std::vector<std::size_t> first(const std::function<bool(const T&)>& meets = nullptr) const {
    std::vector<std::size_t> found;
    std::set<std::string> connections;
    for (const std::size_t i : find<T>(meets)) {
      if (connections.insert(frames[i].connection).second) found.push_back(i);
    }
    EXPECT_FALSE(found.empty());
    return found;
  }
  template <class T>
  std::vector<std::size_t> last(const std::function<bool(const T&)>& meets = nullptr) const {
    std::map<std::string, std::size_t> found;
    for (const std::size_t i : find<T>(meets)) found[frames[i].connection] = i;
    std::vector<std::size_t> places;
    for (const auto& [connection, i] : found) places.push_back(i);
    std::sort(places.begin(), places.end());
    EXPECT_FALSE(places.empty());
    return places;
  }
  std::vector<std::size_t> actions(UserAction action, const SeatID& seat) const {
    return first<SrvUserActionNotify>(
        [&](const SrvUserActionNotify& c) { return c.getActionCode() == action && c.getSeatID() == seat; });
  }
  /// The connection that speaks for a seat.
  std::string connectionOf(const SeatID& seat) const {
    const auto own = find<SrvCardDeal>([&](const SrvCardDeal& deal) {
      const auto& hands = deal.getHands();
      return std::any_of(hands.begin(), hands.end(), [&](const UserCardPack& pack) {
        return pack.getSeatID() == seat && pack.cards()[0].visibility() == Card::Visibility::HiddenOwner;
      });
    });
    return own.empty() ? std::string() : frames[own.front()].connection;
  }
  std::size_t to(const std::string& connection, const std::vector<std::size_t>& places) const {
    for (const std::size_t i : places) {
      if (frames[i].connection == connection) return i;
    }
    ADD_FAILURE() << "nothing to " << connection;
    return places.at(0);
  }
  void insertBefore(const std::vector<std::size_t>& places, const std::function<void(Frame&)>& fill) {
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
      Frame frame = frames[*place];
      fill(frame);
      frame.isPlanted = true;
      frames.insert(frames.begin() + static_cast<std::ptrdiff_t>(*place), std::move(frame));
    }
  }
  /// Takes frames away; what comes next to the same connection is where that shows.
  void drop(const std::vector<std::size_t>& places) {
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
      const Frame gone = frames[*place];
      frames.erase(frames.begin() + static_cast<std::ptrdiff_t>(*place));
      for (std::size_t i = *place; i < frames.size(); ++i) {
        if (frames[i].connection != gone.connection || frames[i].direction != gone.direction) continue;
        frames[i].isPlanted = true;
        break;
      }
    }
  }
  /// Of two frames to the same connection, the later one comes first.
  void swapBefore(const std::vector<std::size_t>& early, const std::vector<std::size_t>& late) {
    for (const std::size_t i : early) {
      const std::size_t other = to(frames[i].connection, late);
      std::swap(frames[i].bytes, frames[other].bytes);
      frames[i].isPlanted = true;
    }
  }

  std::vector<HandFinding> audit() {
    std::uint64_t number = 0;
    std::uint64_t offset = 0;
    Audited audited;
    for (Frame& frame : frames) {
      frame.number = ++number;
      frame.offset = offset;
      offset += frame.bytes.size();
      audited.take(frame.view());
    }
    audited.finish();
    return audited.findings;
  }
  /// One finding, at the first planted frame.
  void expect(const std::string& text, std::uint64_t inHand = 0) {
    const auto found = audit();
    const auto planted = std::find_if(frames.begin(), frames.end(), [](const Frame& frame) { return frame.isPlanted; });
    ASSERT_NE(planted, frames.end());
    std::string lines;
    for (const HandFinding& finding : found) lines += finding.line() + '\n';
    SCOPED_TRACE("in " + toText(story) + lines);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_THAT(found[0].text, HasSubstr(text));
    EXPECT_EQ(found[0].hand, inHand != 0 ? inHand : hand);
    EXPECT_EQ(found[0].at.command, planted->number);
    EXPECT_EQ(found[0].at.offset, planted->offset);
    EXPECT_EQ(found[0].connection, planted->connection);
    EXPECT_EQ(found[0].table, story.table);
  }
};

void change(Plant& plant, const std::vector<std::size_t>& places, UserAction action, const RealMoneyType& free,
            const RealMoneyType& bet) {
  for (const std::size_t i : places) {
    const auto old = plant.frames[i].as<SrvUserActionNotify>();
    plant.frames[i].become<SrvUserActionNotify>(old->getSeatID(), action, old->getFreeMoney() + free,
                                                old->getTableMoney() + bet, old->raisesLeft());
  }
}

/// Writes the end of the hand anew.
void changeEnd(Plant& plant, const std::function<RealMoneyType(const SeatID&, const RealMoneyType&)>& win,
               const RealMoneyType& rake = {}) {
  for (const std::size_t i : plant.find<SrvTUShowDown>()) {
    const auto old = plant.frames[i].as<SrvTUShowDown>();
    CommandHandle<SrvTUShowDown> end = make<SrvTUShowDown>(old->casinoProfit() + rake);
    for (const SDInfo& final : old->getUserCards()) {
      end->addFinalUser(final.cards(), final.getSeatID(), win(final.getSeatID(), final.getMoney()), final.winnerType());
    }
    for (const HandStory::Player& player : plant.story.players) {
      end->addPlayerInfo(player.seat, old->bets(player.seat), win(player.seat, old->wins(player.seat)));
    }
    plant.frames[i].put(*end);
  }
}

CardVector cardsOf(const HandStory::Player& player, Card::Visibility visibility) {
  CardVector cards(player.cards.begin(), player.cards.end());
  cards.setVisibility(visibility);
  return cards;
}

const HandStory::Player& playerAt(const HandStory& hand, const SeatID& seat) {
  return *std::find_if(hand.players.begin(), hand.players.end(),
                       [&](const auto& player) { return player.seat == seat; });
}

void turnUp(Plant& plant, std::size_t frame, const SeatID& seat) {
  const auto old = plant.frames[frame].as<SrvCardDeal>();
  UserCardsInfoVector hands = old->getHands();
  for (UserCardPack& pack : hands) {
    if (pack.getSeatID() == seat) pack.cards() = cardsOf(playerAt(plant.story, seat), Card::Visibility::Shown);
  }
  plant.frames[frame].become<SrvCardDeal>(hands);
}

// No fault at all

/// The texts of the hands of frames that are sound, by number.
std::map<std::uint64_t, std::string> texts(const Frames& frames) {
  std::map<std::uint64_t, std::string> told;
  Audited audited;
  audited.onHand = [&](const RecordedHand& hand) {
    if (hand.isWhole()) {
      EXPECT_TRUE(told.emplace(hand.number(), toText(hand.story())).second) << "hand " << hand.number() << " twice";
    }
  };
  for (const Frame& frame : frames) audited.take(frame.view());
  audited.finish();
  EXPECT_EQ(audited.lines(), "");
  return told;
}

/// As a capture of TCP has them, which knows no table's name: each connection is late by another time.
Frames skewed(std::uint64_t most) {
  std::map<std::string, std::uint64_t> lag;
  std::vector<std::pair<std::uint64_t, Frame>> late;
  for (Frame frame : Game::get().frames) {
    const std::uint64_t delay = lag.try_emplace(frame.connection, lag.size() * most / 5).first->second;
    frame.table.clear();
    late.emplace_back(frame.number + delay, std::move(frame));
  }
  std::stable_sort(late.begin(), late.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  Frames frames;
  for (auto& [when, frame] : late) {
    frames.push_back(std::move(frame));
    frames.back().number = frames.size();
  }
  return frames;
}

TEST(SoundHands, AreTheSameHoweverLateConnectionsHear) {
  const auto inOrder = texts(Game::get().frames);
  EXPECT_EQ(inOrder.size(), 400u);
  EXPECT_EQ(texts(skewed(100)), inOrder);
  EXPECT_EQ(texts(skewed(1000)), inOrder);
}

TEST(SoundHands, AreSoundWhereTheCaptureBeginsInTheMiddle) {
  const Frames& all = Game::get().frames;
  for (const bool isTcp : {false, true}) {
    Frames frames = isTcp ? skewed(50) : all;
    frames.erase(frames.begin(), frames.begin() + static_cast<std::ptrdiff_t>(frames.size() / 3));
    const auto told = texts(frames);
    EXPECT_GT(told.size(), 200u);
    // All is known but the players' names and the stakes.
    EXPECT_THAT(told.rbegin()->second, testing::AllOf(HasSubstr("Seat 3: "), HasSubstr("*** HOLE CARDS ***\nDealt to"),
                                                      HasSubstr("Total pot")));
  }
}

TEST(SoundHands, AreNotTakenForOthersWhenFramesAreLost) {
  Frames frames = Game::get().frames;
  std::size_t count = 0;
  std::erase_if(frames,
                [&](const Frame& frame) { return frame.connection != Game::get().onlooker && ++count % 97 == 0; });
  Audited audited;
  audited.onHand = [&](const RecordedHand& hand) {
    if (hand.isWhole()) {
      HandStory seen = hand.story();
      HandStory played = Game::get().hands.at(hand.number());
      for (HandStory* story : {&seen, &played}) story->tellsAllDealt = false;
      for (HandStory::Player& player : played.players) {
        if (!isShown(player)) player.cards.clear();
      }
      for (HandStory::Player& player : seen.players) {
        if (!isShown(player)) player.cards.clear();
      }
      EXPECT_EQ(toText(seen), toText(played));
    }
  };
  for (const Frame& frame : frames) audited.take(frame.view());
  audited.finish();
  EXPECT_GT(audited.findings.size(), 100u);  // a server that forgets to tell
}

// A capture may hold anything: the audit lives through it, and tells.
TEST(WildFrames, AreJudgedLikeOthers) {
  const Frames& all = Game::get().frames;
  std::mt19937_64 random(9);
  for (unsigned round = 0; round < 30; ++round) {
    Frames frames(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(all.size(), 4000)));
    for (unsigned i = 0; i < 300; ++i) {
      Frame& frame = frames[random() % frames.size()];
      if (i % 3 == 0) std::swap(frame.bytes, frames[random() % frames.size()].bytes);
      if (frame.bytes.size() <= kLengthSlot + 2) continue;
      // A small value, more often than not, leaves something that can be read.
      const std::size_t place = kLengthSlot + 2 + random() % (frame.bytes.size() - kLengthSlot - 2);
      frame.bytes[place] = static_cast<std::uint8_t>(random() % (i % 2 == 0 ? 256 : 8));
    }
    Audited audited;
    audited.onHand = [](const RecordedHand& hand) {
      if (hand.isWhole()) toText(hand.story());
    };
    for (const Frame& frame : frames) audited.tryToTake(frame.view());
    audited.finish();
    EXPECT_GT(audited.findings.size(), 10u);
  }
}

// Cards that are seen too early

TEST(PlantedFaults, CardsOfAnotherSeat) {
  Plant plant(hasFlop);
  const SeatID seat = plant.story.players[0].seat;
  const SeatID other = plant.story.players[1].seat;
  turnUp(plant, plant.to(plant.connectionOf(seat), plant.find<SrvCardDeal>()), other);
  plant.expect("seat " + std::to_string(seat.value()) + " is shown the cards of seat " + std::to_string(other.value()) +
               " before the show-down");
}

TEST(PlantedFaults, CardsForAnOnlooker) {
  Plant plant(hasFlop);
  turnUp(plant, plant.to(Game::get().onlooker, plant.find<SrvCardDeal>()), plant.story.players[0].seat);
  plant.expect("an onlooker is shown the cards of seat");
}

TEST(PlantedFaults, HoleCardsToTheWrongSeat) {
  Plant plant(hasFlop);
  const auto deals = plant.find<SrvCardDeal>();
  const std::string one = plant.connectionOf(plant.story.players[0].seat);
  const std::string two = plant.connectionOf(plant.story.players[1].seat);
  std::swap(plant.frames[plant.to(one, deals)].bytes, plant.frames[plant.to(two, deals)].bytes);
  const auto found = plant.audit();
  std::size_t leaks = 0;
  for (const HandFinding& finding : found) {
    EXPECT_EQ(finding.hand, plant.hand);
    leaks += finding.text.find("is shown the cards of") != std::string::npos ? 1 : 0;
  }
  EXPECT_EQ(leaks, 2u);
}

TEST(PlantedFaults, CardsShownWhileTheBettingGoesOn) {
  Plant plant([](const HandStory& hand) { return hasShowDown(hand) && !hasAllIn(hand); });
  const HandStory::Player& player = playerAt(plant.story, plant.story.finalists[0]);
  plant.insertBefore(plant.first<SrvBetRoundComplete>(), [&](Frame& frame) {
    frame.become<SrvShowPlayerCards>(player.seat, cardsOf(player, Card::Visibility::Shown));
  });
  const auto found = plant.audit();
  ASSERT_FALSE(found.empty());
  EXPECT_THAT(found[0].text, HasSubstr("are shown before the show-down"));
  EXPECT_EQ(found[0].others, 5u);
}

TEST(PlantedFaults, CardsOfWhoHasFolded) {
  Plant plant([](const HandStory& hand) { return hasShowDown(hand) && findAction(hand, UserAction::Fold) != nullptr; });
  const SeatID folded = findAction(plant.story, UserAction::Fold)->seat;
  plant.insertBefore(plant.first<SrvTUShowDown>(), [&](Frame& frame) {
    frame.become<SrvShowPlayerCards>(folded, cardsOf(playerAt(plant.story, folded), Card::Visibility::Shown));
  });
  plant.expect("which has folded, are shown");
}

TEST(PlantedFaults, CardsOfWhoMucked) {
  const auto mucks = [](const HandStory& hand) {
    return std::find_if(hand.finalists.begin(), hand.finalists.end(),
                        [&](const SeatID& seat) { return !isShown(playerAt(hand, seat)); });
  };
  Plant plant([&](const HandStory& hand) { return hasShowDown(hand) && mucks(hand) != hand.finalists.end(); });
  const SeatID seat = *mucks(plant.story);
  const std::size_t i = plant.to(Game::get().onlooker, plant.find<SrvTUShowDown>());
  const auto old = plant.frames[i].as<SrvTUShowDown>();
  CommandHandle<SrvTUShowDown> end = make<SrvTUShowDown>(old->casinoProfit());
  for (const SDInfo& final : old->getUserCards()) {
    end->addFinalUser(
        final.getSeatID() == seat ? cardsOf(playerAt(plant.story, seat), Card::Visibility::Shown) : final.cards(),
        final.getSeatID(), final.getMoney(), final.winnerType());
  }
  for (const auto& player : plant.story.players) {
    end->addPlayerInfo(player.seat, old->bets(player.seat), old->wins(player.seat));
  }
  plant.frames[i].put(*end);
  plant.expect("are told, though it did not show them");
}

// The board

TEST(PlantedFaults, TheBoardBeforeTheRoundIsOver) {
  Plant plant(hasFlop);
  const auto last = plant.first<SrvBetRoundComplete>();
  const auto flop = plant.first<SrvPotCardDeal>();
  plant.swapBefore(last, flop);
  plant.expect("cards come to the board before the betting round is over");
}

TEST(PlantedFaults, WrongNumberOfBoardCards) {
  Plant plant(hasFlop);
  for (const std::size_t i : plant.first<SrvPotCardDeal>()) {
    UserCardsInfoVector packs = plant.frames[i].as<SrvPotCardDeal>()->getHands();
    packs[0].cards().pop_back();
    plant.frames[i].become<SrvPotCardDeal>(packs);
  }
  const auto found = plant.audit();
  ASSERT_FALSE(found.empty());
  EXPECT_THAT(found[0].text, HasSubstr("2 cards come to a board of 0, not 3"));
}

TEST(PlantedFaults, TheSameCardTwice) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() == 3 && hand.finalists.size() == 1; });
  for (const std::size_t i : plant.last<SrvPotCardDeal>()) {
    UserCardsInfoVector packs = plant.frames[i].as<SrvPotCardDeal>()->getHands();
    packs[0].cards()[0] = plant.story.rounds[1].board[1];
    plant.frames[i].become<SrvPotCardDeal>(packs);
  }
  plant.expect("is there twice: among the cards of the board, and on the board");
}

TEST(PlantedFaults, TheSameCardInTwoHands) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() == 1 && hand.finalists.size() == 1; });
  const auto& one = plant.story.players[0];
  const auto& two = plant.story.players[1];
  const std::size_t i = plant.to(plant.connectionOf(two.seat), plant.find<SrvCardDeal>());
  UserCardsInfoVector hands = plant.frames[i].as<SrvCardDeal>()->getHands();
  for (UserCardPack& pack : hands) {
    if (pack.getSeatID() == two.seat) pack.cards() = cardsOf(one, Card::Visibility::HiddenOwner);
  }
  plant.frames[i].become<SrvCardDeal>(hands);
  const auto found = plant.audit();
  ASSERT_EQ(found.size(), 2u);  // two cards
  EXPECT_THAT(found[0].text, HasSubstr("is there twice: among the cards of seat"));
}

// Turns and actions

TEST(PlantedFaults, AnActionOutOfTurn) {
  const auto folds = [](const HandStory& hand) {
    const auto& actions = hand.rounds[0].actions;
    return actions.size() > 2 && actions[0].action == UserAction::Fold && actions[1].action == UserAction::Fold;
  };
  Plant plant(folds);
  const auto& actions = plant.story.rounds[0].actions;
  plant.swapBefore(plant.actions(UserAction::Fold, actions[0].seat), plant.actions(UserAction::Fold, actions[1].seat));
  const auto found = plant.audit();
  ASSERT_FALSE(found.empty());
  EXPECT_EQ(found[0].hand, plant.hand);
  EXPECT_THAT(found[0].text,
              HasSubstr("seat " + std::to_string(actions[1].seat.value()) + " folds, but it is the turn of seat " +
                        std::to_string(actions[0].seat.value())));
}

TEST(PlantedFaults, AnActionTwice) {
  Plant plant([](const HandStory& hand) {
    return hasFlop(hand) && findAction(hand, UserAction::Call) != nullptr && !hasAllIn(hand);
  });
  const auto calls = plant.actions(UserAction::Call, findAction(plant.story, UserAction::Call)->seat);
  std::vector<std::size_t> behind;
  for (const std::size_t i : calls) behind.push_back(i + 1);
  for (auto place = calls.rbegin(); place != calls.rend(); ++place) {
    Frame again = plant.frames[*place];
    again.isPlanted = true;
    plant.frames.insert(plant.frames.begin() + static_cast<std::ptrdiff_t>(*place + 1), again);
  }
  plant.expect("calls, but ");
}

TEST(PlantedFaults, AnActionOfWhoHasFolded) {
  Plant plant([](const HandStory& hand) {
    return hasFlop(hand) && findAction(hand, UserAction::Fold) == &hand.rounds[0].actions[0];
  });
  const SeatID seat = plant.story.rounds[0].actions[0].seat;
  plant.insertBefore(plant.last<SrvBetRoundComplete>(), [&](Frame& frame) {
    frame.become<SrvUserActionNotify>(seat, UserAction::Check, playerAt(plant.story, seat).stack, kZeroMoney,
                                      std::uint8_t{255});
  });
  plant.expect("checks, though it has folded");
}

TEST(PlantedFaults, ARaiseBeyondTheStack) {
  Plant plant([](const HandStory& hand) { return findAction(hand, UserAction::Raise) != nullptr; });
  const auto raises = plant.actions(UserAction::Raise, findAction(plant.story, UserAction::Raise)->seat);
  const auto old = plant.frames[raises[0]].as<SrvUserActionNotify>();
  change(plant, raises, UserAction::Raise, kZeroMoney - old->getFreeMoney(), old->getFreeMoney() + kOne);
  plant.expect("raises: ");
}

TEST(PlantedFaults, ANegativeStack) {
  Plant plant([](const HandStory& hand) { return findAction(hand, UserAction::Raise) != nullptr; });
  const auto raises = plant.actions(UserAction::Raise, findAction(plant.story, UserAction::Raise)->seat);
  const auto old = plant.frames[raises[0]].as<SrvUserActionNotify>();
  const RealMoneyType more = old->getFreeMoney() + kOne;
  change(plant, raises, UserAction::Raise, kZeroMoney - more, more);
  plant.expect("raises and has -1.00 left");
}

TEST(PlantedFaults, AStackThatGrows) {
  Plant plant([](const HandStory& hand) { return findAction(hand, UserAction::Call) != nullptr && !hasAllIn(hand); });
  const auto calls = plant.actions(UserAction::Call, findAction(plant.story, UserAction::Call)->seat);
  change(plant, calls, UserAction::Call, kOne, kZeroMoney);
  plant.expect("calls: ");
}

TEST(PlantedFaults, ABetBelowTheLeast) {
  // A bet that all others fold to: what it was does not matter afterwards.
  const auto betAndFolds = [](const HandStory& hand) {
    const auto& actions = hand.rounds.back().actions;
    const auto bet =
        std::find_if(actions.begin(), actions.end(), [](const auto& a) { return a.action == UserAction::Bet; });
    return hand.rounds.size() > 1 && bet != actions.end() && !bet->allIn &&
           actions.back().action == UserAction::NoAction &&
           std::all_of(bet + 1, actions.end() - 1, [](const auto& a) { return a.action == UserAction::Fold; });
  };
  Plant plant(betAndFolds);
  const auto* bet = findAction(plant.story, UserAction::Bet, plant.story.rounds.size() - 1);
  const auto bets = plant.last<SrvUserActionNotify>(
      [&](const SrvUserActionNotify& c) { return c.getActionCode() == UserAction::Bet && c.getSeatID() == bet->seat; });
  change(plant, bets, UserAction::Bet, bet->amount - kCent, kCent - bet->amount);
  plant.expect("bets to 0.01, where the least is 2.00");
}

TEST(PlantedFaults, ACheckThatFacesABet) {
  Plant plant(
      [](const HandStory& hand) { return hasFlop(hand) && hand.rounds[0].actions[0].action == UserAction::Fold; });
  const auto folds = plant.actions(UserAction::Fold, plant.story.rounds[0].actions[0].seat);
  change(plant, folds, UserAction::Check, kZeroMoney, kZeroMoney);
  plant.expect("checks, though 2.00 are to be called");
}

TEST(PlantedFaults, ATurnOfSomebodyElse) {
  Plant plant(hasFlop);
  const auto& actions = plant.story.rounds[0].actions;
  const SeatID asked = plant.frames[plant.first<SrvUserTurn>()[0]].as<SrvUserTurn>()->getSeatID();
  const SeatID other = asked == actions[0].seat ? actions[1].seat : actions[0].seat;
  for (const std::size_t i : plant.first<SrvUserTurn>()) {
    plant.frames[i].become<SrvUserTurn>(other, false, NextTurnOptions(), 10u);
  }
  plant.expect(
      "is asked to act, but it is the turn of "
      "seat " +
      std::to_string(asked.value()));
}

TEST(PlantedFaults, AnActionThatNobodyAskedFor) {
  Plant plant([](const HandStory& hand) { return hasFlop(hand) && findAction(hand, UserAction::Call) != nullptr; });
  const SeatID seat = findAction(plant.story, UserAction::Call)->seat;
  const std::string connection = plant.connectionOf(seat);
  const std::size_t call = plant.to(connection, plant.actions(UserAction::Call, seat));
  std::vector<std::size_t> turns;
  for (const std::size_t i : plant.find<SrvUserTurn>([&](const SrvUserTurn& turn) { return turn.isNotify(); })) {
    if (plant.frames[i].connection == connection && i < call) turns.push_back(i);
  }
  ASSERT_FALSE(turns.empty());
  plant.drop({turns.back()});
  for (Frame& frame : plant.frames) frame.isPlanted = false;
  plant.frames[call - 1].isPlanted = true;
  plant.expect("calls, though its player was not asked");
}

TEST(PlantedFaults, AnActionThatWasNotOffered) {
  Plant plant([](const HandStory& hand) { return hasFlop(hand) && findAction(hand, UserAction::Call) != nullptr; });
  const SeatID seat = findAction(plant.story, UserAction::Call)->seat;
  const std::string connection = plant.connectionOf(seat);
  const std::size_t call = plant.to(connection, plant.actions(UserAction::Call, seat));
  for (const std::size_t i : plant.find<SrvUserTurn>([&](const SrvUserTurn& turn) { return turn.isNotify(); })) {
    if (plant.frames[i].connection != connection || i > call) continue;
    NextTurnOptions options;
    options.addFoldOption();
    plant.frames[i].become<SrvUserTurn>(seat, true, options, 10u);
    plant.frames[i].isPlanted = false;
  }
  plant.frames[call].isPlanted = true;
  plant.expect("calls, which it was not offered");
}

// Money

TEST(PlantedFaults, ALostCentOfASplitPot) {
  Plant plant([](const HandStory& hand) { return hand.pots.size() == 1 && winners(hand) == 2; });
  const SeatID seat = plant.story.pots[0].wins[0].seat;
  changeEnd(plant, [&](const SeatID& each, const RealMoneyType& win) { return each == seat ? win - kCent : win; });
  plant.expect("are paid from pots of");
}

TEST(PlantedFaults, ASplitPotThatIsNotEven) {
  Plant plant([](const HandStory& hand) { return hand.pots.size() == 1 && winners(hand) == 2; });
  const SeatID first = plant.story.pots[0].wins[0].seat;
  const SeatID second = plant.story.pots[0].wins[1].seat;
  changeEnd(plant, [&](const SeatID& each, const RealMoneyType& win) {
    return each == first ? win + kOne : each == second ? win - kOne : win;
  });
  plant.expect("of the pots are due");
}

TEST(PlantedFaults, ADoublePayout) {
  Plant plant(hasShowDown);
  changeEnd(plant, [](const SeatID&, const RealMoneyType& win) { return win * 2; });
  plant.expect("are paid from pots of");
}

TEST(PlantedFaults, AWinForTheWrongHand) {
  Plant plant([](const HandStory& hand) {
    return hasShowDown(hand) && hand.pots.size() == 1 && winners(hand) == 1 && hand.finalists.size() == 2;
  });
  const RealMoneyType all = plant.story.pots[0].amount;
  const SeatID winner = plant.story.pots[0].wins[0].seat;
  const SeatID loser = plant.story.finalists[plant.story.finalists[0] == winner ? 1 : 0];
  changeEnd(plant, [&](const SeatID& each, const RealMoneyType&) { return each == loser ? all : kZeroMoney; });
  plant.expect("of the pots are due");
}

TEST(PlantedFaults, AWinForWhoHasFolded) {
  Plant plant(
      [](const HandStory& hand) { return findAction(hand, UserAction::Fold) != nullptr && hand.pots.size() == 1; });
  const SeatID folded = findAction(plant.story, UserAction::Fold)->seat;
  const RealMoneyType all = plant.story.pots[0].amount;
  changeEnd(plant, [&](const SeatID& each, const RealMoneyType&) { return each == folded ? all : kZeroMoney; });
  plant.expect("seat " + std::to_string(folded.value()) + " wins");
}

TEST(PlantedFaults, ARakeWithoutAFlop) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() == 1 && hand.finalists.size() == 1; });
  const SeatID winner = plant.story.finalists[0];
  for (const std::size_t i : plant.find<SrvBetRoundComplete>()) {
    const auto old = plant.frames[i].as<SrvBetRoundComplete>();
    plant.frames[i].become<SrvBetRoundComplete>(Pot(old->getPot().mainPot() - kCent), old->moveChips(),
                                                old->showCheckBoxes(), old->bet(), kCent);
  }
  changeEnd(
      plant, [&](const SeatID& each, const RealMoneyType& win) { return each == winner ? win - kCent : win; }, kCent);
  const auto found = plant.audit();
  ASSERT_FALSE(found.empty());
  EXPECT_THAT(found[0].text, HasSubstr("a rake of 0.01 is taken before there is a flop"));
  EXPECT_EQ(found[0].hand, plant.hand);
}

TEST(PlantedFaults, ARakeThatWasNotTold) {
  Plant plant(hasShowDown);
  changeEnd(
      plant, [](const SeatID&, const RealMoneyType& win) { return win; }, kOne);
  plant.expect("were told with the pots");
}

TEST(PlantedFaults, APotThatIsTooSmall) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() > 2 && !hasAllIn(hand); });
  for (const std::size_t i : plant.first<SrvBetRoundComplete>()) {
    const auto old = plant.frames[i].as<SrvBetRoundComplete>();
    plant.frames[i].become<SrvBetRoundComplete>(Pot(old->getPot().mainPot() - kOne), old->moveChips(),
                                                old->showCheckBoxes(), old->bet(), old->rake());
  }
  plant.expect("were paid in");
}

TEST(PlantedFaults, AnUncalledBetThatIsKept) {
  Plant plant([](const HandStory& hand) { return findAction(hand, UserAction::NoAction) != nullptr; });
  plant.drop(plant.find<SrvUserActionNotify>(
      [](const SrvUserActionNotify& c) { return c.getActionCode() == UserAction::NoAction; }));
  plant.expect("that nobody called are not given back");
}

TEST(PlantedFaults, AStackThatShrinksBetweenHands) {
  Plant plant(hasFlop);
  const HandStory::Player& player = plant.story.players[0];
  std::vector<std::size_t> next;
  for (std::size_t i = 0; i < plant.frames.size(); ++i) {
    if (plant.frames[i].hand == plant.hand + 1 && plant.frames[i].is<SrvUpdateHintText>()) next.push_back(i);
  }
  plant.insertBefore(next, [&](Frame& frame) {
    frame.become<SrvUserStateOnTable>(player.seat, player.name.c_str(), kCent, UserState::Waiting);
  });
  plant.expect("is said to have 0.01, but has");
}

// The order of things

TEST(PlantedFaults, AHandNumberThatGoesBack) {
  Plant plant(hasFlop);
  const std::uint64_t wrong = plant.hand - 2;
  for (const std::size_t i : plant.find<SrvUpdateHintText>()) {
    plant.frames[i].become<SrvUpdateHintText>(TableFollower::kHandNumberHint, std::to_string(wrong).c_str());
    plant.frames[i].isPlanted = false;
  }
  for (const std::size_t i : plant.find<SrvGameStart>()) plant.frames[i].isPlanted = true;
  plant.expect("number goes back", wrong);
}

TEST(PlantedFaults, ABlindTwice) {
  Plant plant([](const HandStory& hand) { return hand.posts[0].action == UserAction::SmallBlind; });
  const auto posts = plant.actions(UserAction::SmallBlind, plant.story.posts[0].seat);
  for (auto place = posts.rbegin(); place != posts.rend(); ++place) {
    Frame again = plant.frames[*place];
    again.isPlanted = true;
    plant.frames.insert(plant.frames.begin() + static_cast<std::ptrdiff_t>(*place + 1), again);
  }
  plant.expect("posts the small blind, which is posted already");
}

TEST(PlantedFaults, ABlindOfTheWrongSize) {
  Plant plant([](const HandStory& hand) { return hand.posts[0].action == UserAction::SmallBlind; });
  const auto posts = plant.actions(UserAction::SmallBlind, plant.story.posts[0].seat);
  change(plant, posts, UserAction::SmallBlind, kCent, kZeroMoney - kCent);
  plant.expect("posts the small blind of 0.99, which is 1.00 here");
}

TEST(PlantedFaults, AButtonInTheWrongPlace) {
  Plant plant([](const HandStory& hand) { return hand.players.size() == 5; });
  SeatID other;
  for (const auto& player : plant.story.players) {
    if (player.seat != plant.story.button) other = player.seat;
  }
  for (const std::size_t i : plant.find<SrvMoveDealChip>()) plant.frames[i].become<SrvMoveDealChip>(other);
  const auto found = plant.audit();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_THAT(found[0].text, HasSubstr("the button is at seat " + std::to_string(other.value())));
  EXPECT_EQ(found[0].hand, plant.hand);
}

TEST(PlantedFaults, AHandWithoutAnEnd) {
  Plant plant(hasFlop);
  const auto ends = plant.find<SrvTUShowDown>();
  for (auto end = ends.rbegin(); end != ends.rend(); ++end) {
    plant.frames.erase(plant.frames.begin() + static_cast<std::ptrdiff_t>(*end));
  }
  const auto found = plant.audit();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_THAT(found[0].text, HasSubstr("begins, but hand " + std::to_string(plant.hand) + " is not over"));
}

// Connections that are told different things

TEST(PlantedFaults, AnotherActionForOneConnection) {
  Plant plant([](const HandStory& hand) { return hasFlop(hand) && findAction(hand, UserAction::Check, 1) != nullptr; });
  const SeatID seat = findAction(plant.story, UserAction::Check, 1)->seat;
  change(plant, {plant.to(Game::get().onlooker, plant.actions(UserAction::Check, seat))}, UserAction::Fold, kZeroMoney,
         kZeroMoney);
  plant.expect("is told \"seat " + std::to_string(seat.value()) + " folds");
}

TEST(PlantedFaults, AnotherBoardForOneConnection) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() == 2 && hand.finalists.size() == 1; });
  const std::size_t i = plant.to(Game::get().onlooker, plant.find<SrvPotCardDeal>());
  UserCardsInfoVector packs = plant.frames[i].as<SrvPotCardDeal>()->getHands();
  std::swap(packs[0].cards()[0], packs[0].cards()[1]);
  plant.frames[i].become<SrvPotCardDeal>(packs);
  plant.expect("is told \"cards come to the board\", but not in the same way as");
}

TEST(PlantedFaults, AnActionThatOneConnectionIsNotTold) {
  Plant plant([](const HandStory& hand) { return hasFlop(hand) && findAction(hand, UserAction::Check, 1) != nullptr; });
  const SeatID seat = findAction(plant.story, UserAction::Check, 1)->seat;
  plant.drop({plant.to(Game::get().onlooker, plant.actions(UserAction::Check, seat))});
  const auto found = plant.audit();
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].connection, Game::get().onlooker);
  EXPECT_EQ(found[0].hand, plant.hand);
}

}  // namespace
}  // namespace poker

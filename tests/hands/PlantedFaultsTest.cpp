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
#include <string>
#include <tuple>
#include <utility>
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

/// Where frames stand, in their order.
using Places = std::vector<std::size_t>;

/// A copy of the game to plant a fault into, up to a few hands behind the one that gets it.
class Plant {
 public:
  Frames frames;
  HandStory story;
  std::uint64_t hand = 0;
  SeatID seat;  ///< whose action the fault is about
  Places told;  ///< the frames that tell of that action, one to each connection

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
  /// The fault is about the first such action, from that round on.
  explicit Plant(UserAction action, const Wanted& wanted = nullptr, std::size_t fromRound = 0)
      : Plant([&](const HandStory& played) {
          return findAction(played, action, fromRound) != nullptr && (!wanted || wanted(played));
        }) {
    if (const auto* found = findAction(story, action, fromRound)) tellOf(action, found->seat);
  }
  void tellOf(UserAction action, const SeatID& whose) {
    seat = whose;
    told = actions(action, seat);
  }

  /// Where frames of class T of the hand stand that meet the condition.
  template <class T>
  Places find(const std::function<bool(const T&)>& meets = nullptr) const {
    Places found;
    for (std::size_t i = 0; i < frames.size(); ++i) {
      if (frames[i].hand == hand && frames[i].is<T>() && (!meets || meets(*frames[i].as<T>()))) found.push_back(i);
    }
    return found;
  }
  /// The first of them, or the last one, to each connection.
  template <class T>
  Places first(const std::function<bool(const T&)>& meets = nullptr) const {
    return oneEach(find<T>(meets), false);
  }
  template <class T>
  Places last(const std::function<bool(const T&)>& meets = nullptr) const {
    return oneEach(find<T>(meets), true);
  }
  Places actions(UserAction action, const SeatID& whose) const {
    return first<SrvUserActionNotify>(
        [&](const SrvUserActionNotify& c) { return c.getActionCode() == action && c.getSeatID() == whose; });
  }
  /// The connection that speaks for a seat.
  std::string connectionOf(const SeatID& whose) const {
    const auto own = find<SrvCardDeal>([&](const SrvCardDeal& deal) {
      const auto& hands = deal.getHands();
      return std::any_of(hands.begin(), hands.end(), [&](const UserCardPack& pack) {
        return pack.getSeatID() == whose && pack.cards()[0].visibility() == Card::Visibility::HiddenOwner;
      });
    });
    return own.empty() ? std::string() : frames[own.front()].connection;
  }
  /// The turns that are told to a connection, up to that frame.
  Places turnsBefore(std::size_t end, const std::string& connection) const {
    Places turns = find<SrvUserTurn>([&](const SrvUserTurn& turn) { return turn.isNotify(); });
    std::erase_if(turns, [&](std::size_t i) { return i >= end || frames[i].connection != connection; });
    EXPECT_FALSE(turns.empty());
    return turns;
  }
  std::size_t to(const std::string& connection, const Places& places) const {
    for (const std::size_t i : places) {
      if (frames[i].connection == connection) return i;
    }
    ADD_FAILURE() << "nothing to " << connection;
    return places.at(0);
  }
  std::size_t toOnlooker(const Places& places) const { return to(Game::get().onlooker, places); }

  void insertBefore(const Places& places, const std::function<void(Frame&)>& fill) {
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
      Frame frame = frames[*place];
      fill(frame);
      frame.isPlanted = true;
      frames.insert(frames.begin() + static_cast<std::ptrdiff_t>(*place), std::move(frame));
    }
  }
  /// Tells the action twice.
  void repeat() {
    insertBefore(told, [](Frame&) {});
    for (std::size_t i = 0; i + 1 < frames.size(); ++i) {
      if (std::exchange(frames[i].isPlanted, false)) frames[++i].isPlanted = true;
    }
  }
  /// Takes frames away; what comes next to the same connection is where that shows.
  void drop(const Places& places) {
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
  void swapBefore(const Places& early, const Places& late) {
    for (const std::size_t i : early) {
      const std::size_t other = to(frames[i].connection, late);
      std::swap(frames[i].bytes, frames[other].bytes);
      frames[i].isPlanted = true;
    }
  }
  /// Tells of another action, with so much more left and before the player.
  void change(const Places& places, UserAction action, const RealMoneyType& free = {}, const RealMoneyType& bet = {}) {
    for (const std::size_t i : places) {
      const auto old = frames[i].as<SrvUserActionNotify>();
      frames[i].become<SrvUserActionNotify>(old->getSeatID(), action, old->getFreeMoney() + free,
                                            old->getTableMoney() + bet, old->raisesLeft());
    }
  }
  void changeCards(const Places& places, const std::function<void(CardVector&)>& cards) {
    for (const std::size_t i : places) {
      UserCardsInfoVector packs = frames[i].as<SrvPotCardDeal>()->getHands();
      cards(packs[0].cards());
      frames[i].become<SrvPotCardDeal>(packs);
    }
  }
  void changePots(const Places& places, const RealMoneyType& less, const RealMoneyType& rake = {}) {
    for (const std::size_t i : places) {
      const auto old = frames[i].as<SrvBetRoundComplete>();
      frames[i].become<SrvBetRoundComplete>(Pot(old->getPot().mainPot() - less), old->moveChips(),
                                            old->showCheckBoxes(), old->bet(), old->rake() + rake);
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
  /// The first of so many findings, or of any number.
  HandFinding expectFirst(const std::string& text, std::size_t count = 0) {
    const auto found = audit();
    EXPECT_FALSE(found.empty());
    if (found.empty()) return {};
    EXPECT_EQ(found.size(), count != 0 ? count : found.size());
    EXPECT_THAT(found[0].text, HasSubstr(text));
    return found[0];
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

 private:
  Places oneEach(const Places& places, bool isLast) const {
    std::map<std::string, std::size_t> found;
    for (const std::size_t i : places) {
      std::size_t& place = found.try_emplace(frames[i].connection, i).first->second;
      if (isLast) place = i;
    }
    Places each;
    for (const auto& [connection, i] : found) each.push_back(i);
    std::sort(each.begin(), each.end());
    EXPECT_FALSE(each.empty());
    return each;
  }
};

using Win = std::function<RealMoneyType(const SeatID&, const RealMoneyType&)>;
RealMoneyType asItWas(const SeatID&, const RealMoneyType& win) { return win; }

/// Writes the end of the hand anew.
void changeEnd(Plant& plant, const Places& places, const Win& win, const RealMoneyType& rake,
               const std::function<CardVector(const SDInfo&)>& cards) {
  for (const std::size_t i : places) {
    const auto old = plant.frames[i].as<SrvTUShowDown>();
    CommandHandle<SrvTUShowDown> end = make<SrvTUShowDown>(old->casinoProfit() + rake);
    for (const SDInfo& final : old->getUserCards()) {
      end->addFinalUser(cards(final), final.getSeatID(), win(final.getSeatID(), final.getMoney()), final.winnerType());
    }
    for (const HandStory::Player& player : plant.story.players) {
      end->addPlayerInfo(player.seat, old->bets(player.seat), win(player.seat, old->wins(player.seat)));
    }
    plant.frames[i].put(*end);
  }
}
void changeWins(Plant& plant, const Win& win, const RealMoneyType& rake = {}) {
  changeEnd(plant, plant.find<SrvTUShowDown>(), win, rake, [](const SDInfo& final) { return final.cards(); });
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

/// Deals a seat other cards.
void deal(Plant& plant, std::size_t frame, const SeatID& seat, const CardVector& cards) {
  UserCardsInfoVector hands = plant.frames[frame].as<SrvCardDeal>()->getHands();
  for (UserCardPack& pack : hands) {
    if (pack.getSeatID() == seat) pack.cards() = cards;
  }
  plant.frames[frame].become<SrvCardDeal>(hands);
}

void show(Plant& plant, const Places& before, const SeatID& seat) {
  plant.insertBefore(before, [&](Frame& frame) {
    frame.become<SrvShowPlayerCards>(seat, cardsOf(playerAt(plant.story, seat), Card::Visibility::Shown));
  });
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
      for (HandStory* story : {&seen, &played}) {
        story->tellsAllDealt = false;
        for (HandStory::Player& player : story->players) {
          if (!isShown(player)) player.cards.clear();
        }
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
  const auto& [one, two] = std::tie(plant.story.players[0], plant.story.players[1]);
  deal(plant, plant.to(plant.connectionOf(one.seat), plant.find<SrvCardDeal>()), two.seat,
       cardsOf(two, Card::Visibility::Shown));
  plant.expect(seatText(one.seat) + " is shown the cards of " + seatText(two.seat) + " before the show-down");
}

TEST(PlantedFaults, CardsForAnOnlooker) {
  Plant plant(hasFlop);
  const auto& player = plant.story.players[0];
  deal(plant, plant.toOnlooker(plant.find<SrvCardDeal>()), player.seat, cardsOf(player, Card::Visibility::Shown));
  plant.expect("an onlooker is shown the cards of seat");
}

TEST(PlantedFaults, CardsShownWhileTheBettingGoesOn) {
  Plant plant([](const HandStory& hand) { return hasShowDown(hand) && !hasAllIn(hand); });
  show(plant, plant.first<SrvBetRoundComplete>(), plant.story.finalists[0]);
  EXPECT_EQ(plant.expectFirst("are shown before the show-down").others, 5u);
}

TEST(PlantedFaults, CardsOfWhoHasFolded) {
  Plant plant(UserAction::Fold, hasShowDown);
  show(plant, plant.first<SrvTUShowDown>(), plant.seat);
  plant.expect("which has folded, are shown");
}

TEST(PlantedFaults, CardsOfWhoMucked) {
  const auto mucks = [](const HandStory& hand) {
    return std::find_if(hand.finalists.begin(), hand.finalists.end(),
                        [&](const SeatID& seat) { return !isShown(playerAt(hand, seat)); });
  };
  Plant plant([&](const HandStory& hand) { return hasShowDown(hand) && mucks(hand) != hand.finalists.end(); });
  const HandStory::Player& player = playerAt(plant.story, *mucks(plant.story));
  changeEnd(plant, {plant.toOnlooker(plant.find<SrvTUShowDown>())}, asItWas, {}, [&](const SDInfo& final) {
    return final.getSeatID() == player.seat ? cardsOf(player, Card::Visibility::Shown) : final.cards();
  });
  plant.expect("are told, though it did not show them");
}

// The board

TEST(PlantedFaults, TheBoardBeforeTheRoundIsOver) {
  Plant plant(hasFlop);
  plant.swapBefore(plant.first<SrvBetRoundComplete>(), plant.first<SrvPotCardDeal>());
  plant.expect("cards come to the board before the betting round is over");
}

TEST(PlantedFaults, WrongNumberOfBoardCards) {
  Plant plant(hasFlop);
  plant.changeCards(plant.first<SrvPotCardDeal>(), [](CardVector& cards) { cards.pop_back(); });
  plant.expectFirst("2 cards come to a board of 0, not 3");
}

TEST(PlantedFaults, TheSameCardTwice) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() == 3 && hand.finalists.size() == 1; });
  plant.changeCards(plant.last<SrvPotCardDeal>(),
                    [&](CardVector& cards) { cards[0] = plant.story.rounds[1].board[1]; });
  plant.expect("is there twice: among the cards of the board, and on the board");
}

TEST(PlantedFaults, TheSameCardInTwoHands) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() == 1 && hand.finalists.size() == 1; });
  const auto& [one, two] = std::tie(plant.story.players[0], plant.story.players[1]);
  deal(plant, plant.to(plant.connectionOf(two.seat), plant.find<SrvCardDeal>()), two.seat,
       cardsOf(one, Card::Visibility::HiddenOwner));
  plant.expectFirst("is there twice: among the cards of seat", 2);  // two cards
}

// Turns and actions

TEST(PlantedFaults, AnActionOutOfTurn) {
  Plant plant([](const HandStory& hand) {
    const auto& actions = hand.rounds[0].actions;
    return actions.size() > 2 && actions[0].action == UserAction::Fold && actions[1].action == UserAction::Fold;
  });
  const auto& actions = plant.story.rounds[0].actions;
  const auto& [one, two] = std::tie(actions[0].seat, actions[1].seat);
  plant.swapBefore(plant.actions(UserAction::Fold, one), plant.actions(UserAction::Fold, two));
  const auto found = plant.expectFirst(seatText(two) + " folds, but it is the turn of " + seatText(one));
  EXPECT_EQ(found.hand, plant.hand);
}

TEST(PlantedFaults, AnActionTwice) {
  Plant plant(UserAction::Call, [](const HandStory& hand) { return hasFlop(hand) && !hasAllIn(hand); });
  plant.repeat();
  plant.expect("calls, but ");
}

TEST(PlantedFaults, AnActionOfWhoHasFolded) {
  Plant plant(
      [](const HandStory& hand) { return hasFlop(hand) && hand.rounds[0].actions[0].action == UserAction::Fold; });
  const SeatID seat = plant.story.rounds[0].actions[0].seat;
  plant.insertBefore(plant.last<SrvBetRoundComplete>(), [&](Frame& frame) {
    frame.become<SrvUserActionNotify>(seat, UserAction::Check, playerAt(plant.story, seat).stack, kZeroMoney,
                                      std::uint8_t{255});
  });
  plant.expect("checks, though it has folded");
}

TEST(PlantedFaults, ANegativeStack) {
  Plant plant(UserAction::Raise);
  const RealMoneyType more = plant.frames[plant.told[0]].as<SrvUserActionNotify>()->getFreeMoney() + kOne;
  plant.change(plant.told, UserAction::Raise, kZeroMoney - more, more);
  plant.expect("raises and has -1.00 left");
}

TEST(PlantedFaults, AStackThatGrows) {
  Plant plant(UserAction::Call, [](const HandStory& hand) { return !hasAllIn(hand); });
  plant.change(plant.told, UserAction::Call, kOne);
  plant.expect("calls: ");
}

TEST(PlantedFaults, ABetBelowTheLeast) {
  // A bet that all others fold to: what it was does not matter afterwards.
  Plant plant([](const HandStory& hand) {
    const auto& actions = hand.rounds.back().actions;
    const auto bet =
        std::find_if(actions.begin(), actions.end(), [](const auto& a) { return a.action == UserAction::Bet; });
    return hand.rounds.size() > 1 && bet != actions.end() && !bet->allIn &&
           actions.back().action == UserAction::NoAction &&
           std::all_of(bet + 1, actions.end() - 1, [](const auto& a) { return a.action == UserAction::Fold; });
  });
  const auto* bet = findAction(plant.story, UserAction::Bet, plant.story.rounds.size() - 1);
  const auto bets = plant.last<SrvUserActionNotify>(
      [&](const SrvUserActionNotify& c) { return c.getActionCode() == UserAction::Bet && c.getSeatID() == bet->seat; });
  plant.change(bets, UserAction::Bet, bet->amount - kCent, kCent - bet->amount);
  plant.expect("bets to 0.01, where the least is 2.00");
}

TEST(PlantedFaults, ACheckThatFacesABet) {
  Plant plant(
      [](const HandStory& hand) { return hasFlop(hand) && hand.rounds[0].actions[0].action == UserAction::Fold; });
  plant.change(plant.actions(UserAction::Fold, plant.story.rounds[0].actions[0].seat), UserAction::Check);
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
  plant.expect("is asked to act, but it is the turn of " + seatText(asked));
}

TEST(PlantedFaults, AnActionThatNobodyAskedFor) {
  Plant plant(UserAction::Call, hasFlop);
  const std::string connection = plant.connectionOf(plant.seat);
  const std::size_t call = plant.to(connection, plant.told);
  plant.drop({plant.turnsBefore(call, connection).back()});
  for (Frame& frame : plant.frames) frame.isPlanted = false;
  plant.frames[call - 1].isPlanted = true;
  plant.expect("calls, though its player was not asked");
}

TEST(PlantedFaults, AnActionThatWasNotOffered) {
  Plant plant(UserAction::Call, hasFlop);
  const std::string connection = plant.connectionOf(plant.seat);
  const std::size_t call = plant.to(connection, plant.told);
  NextTurnOptions options;
  options.addFoldOption();
  for (const std::size_t i : plant.turnsBefore(call, connection)) {
    plant.frames[i].become<SrvUserTurn>(plant.seat, true, options, 10u);
    plant.frames[i].isPlanted = false;
  }
  plant.frames[call].isPlanted = true;
  plant.expect("calls, which it was not offered");
}

// Money

bool isSplit(const HandStory& hand) { return hand.pots.size() == 1 && winners(hand) == 2; }

TEST(PlantedFaults, ALostCentOfASplitPot) {
  Plant plant(isSplit);
  const SeatID seat = plant.story.pots[0].wins[0].seat;
  changeWins(plant, [&](const SeatID& each, const RealMoneyType& win) { return each == seat ? win - kCent : win; });
  plant.expect("are paid from pots of");
}

TEST(PlantedFaults, ASplitPotThatIsNotEven) {
  Plant plant(isSplit);
  const auto& wins = plant.story.pots[0].wins;
  changeWins(plant, [&](const SeatID& each, const RealMoneyType& win) {
    return each == wins[0].seat ? win + kOne : each == wins[1].seat ? win - kOne : win;
  });
  plant.expect("of the pots are due");
}

/// All of the only pot is for one seat.
void giveAllTo(Plant& plant, const SeatID& seat) {
  const RealMoneyType all = plant.story.pots[0].amount;
  changeWins(plant, [&](const SeatID& each, const RealMoneyType&) { return each == seat ? all : kZeroMoney; });
}

TEST(PlantedFaults, AWinForTheWrongHand) {
  Plant plant([](const HandStory& hand) {
    return hasShowDown(hand) && hand.pots.size() == 1 && winners(hand) == 1 && hand.finalists.size() == 2;
  });
  const auto& finalists = plant.story.finalists;
  giveAllTo(plant, finalists[finalists[0] == plant.story.pots[0].wins[0].seat ? 1 : 0]);
  plant.expect("of the pots are due");
}

TEST(PlantedFaults, AWinForWhoHasFolded) {
  Plant plant(UserAction::Fold, [](const HandStory& hand) { return hand.pots.size() == 1; });
  giveAllTo(plant, plant.seat);
  plant.expect(seatText(plant.seat) + " wins");
}

TEST(PlantedFaults, ARakeWithoutAFlop) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() == 1 && hand.finalists.size() == 1; });
  const SeatID winner = plant.story.finalists[0];
  plant.changePots(plant.find<SrvBetRoundComplete>(), kCent, kCent);
  changeWins(
      plant, [&](const SeatID& each, const RealMoneyType& win) { return each == winner ? win - kCent : win; }, kCent);
  EXPECT_EQ(plant.expectFirst("a rake of 0.01 is taken before there is a flop").hand, plant.hand);
}

TEST(PlantedFaults, ARakeThatWasNotTold) {
  Plant plant(hasShowDown);
  changeWins(plant, asItWas, kOne);
  plant.expect("were told with the pots");
}

TEST(PlantedFaults, APotThatIsTooSmall) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() > 2 && !hasAllIn(hand); });
  plant.changePots(plant.first<SrvBetRoundComplete>(), kOne);
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
  Places next;
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

TEST(PlantedFaults, ABlindTwiceOrOfTheWrongSize) {
  const auto hasSmallBlind = [](const HandStory& hand) { return hand.posts[0].action == UserAction::SmallBlind; };
  Plant twice(hasSmallBlind);
  twice.tellOf(UserAction::SmallBlind, twice.story.posts[0].seat);
  twice.repeat();
  twice.expect("posts the small blind, which is posted already");

  Plant small(hasSmallBlind);
  small.tellOf(UserAction::SmallBlind, small.story.posts[0].seat);
  small.change(small.told, UserAction::SmallBlind, kCent, kZeroMoney - kCent);
  small.expect("posts the small blind of 0.99, which is 1.00 here");
}

TEST(PlantedFaults, AButtonInTheWrongPlace) {
  Plant plant([](const HandStory& hand) { return hand.players.size() == 5; });
  SeatID other;
  for (const auto& player : plant.story.players) {
    if (player.seat != plant.story.button) other = player.seat;
  }
  for (const std::size_t i : plant.find<SrvMoveDealChip>()) plant.frames[i].become<SrvMoveDealChip>(other);
  EXPECT_EQ(plant.expectFirst("the button is at " + seatText(other), 1).hand, plant.hand);
}

TEST(PlantedFaults, AHandWithoutAnEnd) {
  Plant plant(hasFlop);
  plant.drop(plant.find<SrvTUShowDown>());
  plant.expectFirst("begins, but hand " + std::to_string(plant.hand) + " is not over", 1);
}

// Connections that are told different things

TEST(PlantedFaults, AnotherActionForOneConnection) {
  Plant plant(UserAction::Check, hasFlop, 1);
  plant.change({plant.toOnlooker(plant.told)}, UserAction::Fold);
  plant.expect("is told \"" + seatText(plant.seat) + " folds");
}

TEST(PlantedFaults, AnotherBoardForOneConnection) {
  Plant plant([](const HandStory& hand) { return hand.rounds.size() == 2 && hand.finalists.size() == 1; });
  plant.changeCards({plant.toOnlooker(plant.find<SrvPotCardDeal>())},
                    [](CardVector& cards) { std::swap(cards[0], cards[1]); });
  plant.expect("is told \"cards come to the board\", but not in the same way as");
}

TEST(PlantedFaults, AnActionThatOneConnectionIsNotTold) {
  Plant plant(UserAction::Check, hasFlop, 1);
  plant.drop({plant.toOnlooker(plant.told)});
  const HandFinding found = plant.expectFirst("", 1);
  EXPECT_EQ(found.connection, Game::get().onlooker);
  EXPECT_EQ(found.hand, plant.hand);
}

}  // namespace
}  // namespace poker

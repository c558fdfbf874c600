#include "Place.h"

#include <examples/holdem/game/CardText.h>
#include <hostkit/Decode.h>
#include <inspect/CommandText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;
using test::Place;

constexpr std::uint8_t kFaceDown = 255, kOwnerOnly = 100;

/// What the bank recorded of a hand: the cards that each seat really had, and whether it showed them.
struct Truth {
  struct Seat {
    std::vector<std::uint8_t> faces;
    bool shown;
  };
  std::map<int, Seat> seats;

  Truth(Bank& bank, std::uint64_t number) {
    const nlohmann::json record = nlohmann::json::parse(*bank.handRecord(number));
    for (const auto& player : record["players"]) {
      Seat& seat = seats[player["seat"].get<int>()];
      const auto cards = cardsFromText(player["cards"].get<std::string>());
      for (const Card& card : *cards) seat.faces.push_back(card.toByte());
      seat.shown = player["shown"].get<bool>();
    }
  }
};

/// Watches the frames that one client receives.
class Witness {
 public:
  std::uint64_t turns = 0;     // that it was asked for
  std::uint64_t hands = 0;     // that it saw end
  std::uint64_t compared = 0;  // pictures

  Witness(const PlayerClient& client, std::function<const Truth&()> truth)
      : client_(client), truth_(std::move(truth)) {}

  void operator()(FrameDirection direction, std::span<const std::uint8_t> frame) {
    if (direction != FrameDirection::In) return;
    const DecodeResult decoded = decodeCommand(frame.subspan(kLengthSlot), DecodePolicy::of(Side::Client));
    ASSERT_TRUE(decoded);
    const PokerCommandI* command = decoded.command.get();
    if (const auto* dealt = dynamic_cast<const SrvCardDeal*>(command)) {
      for (const UserCardPack& pack : dealt->getHands()) see(pack.getSeatID(), pack.cards());
    } else if (const auto* shown = dynamic_cast<const SrvShowPlayerCards*>(command)) {
      see(shown->seatID(), shown->cards());
    } else if (const auto* showDown = dynamic_cast<const SrvTUShowDown*>(command)) {
      for (const SDInfo& player : showDown->getUserCards()) see(player.getSeatID(), player.cards());
      judge();
    } else if (const auto* state = dynamic_cast<const SrvTableState*>(command)) {
      compare(state->getState());
    } else if (const auto* turn = dynamic_cast<const SrvUserTurn*>(command)) {
      turns += turn->getSeatID() == own() && turn->isNotify() ? 1 : 0;
    }
  }

 private:
  SeatID own() const { return client_.picture().state().ownSeat; }

  void see(const SeatID& seat, const CardVector& cards) {
    ASSERT_EQ(cards.size(), 2u);
    for (const Card& card : cards) {
      const std::uint8_t byte = card.toByte();  // all of what came
      if (byte == kFaceDown) continue;
      ASSERT_TRUE(byte < kOwnerOnly || seat == own());
      seen_[seat.value()].insert(byte >= kOwnerOnly ? byte - kOwnerOnly : byte);
    }
  }
  /// At the end of a hand: every face that came was its player's own, or was shown.
  void judge() {
    ++hands;
    const Truth& truth = truth_();
    for (const auto& [seat, faces] : seen_) {
      const Truth::Seat& real = truth.seats.at(seat);
      EXPECT_TRUE(seat == own().value() || real.shown) << "seat " << seat << " was seen by " << int{own().value()};
      EXPECT_EQ(faces, (std::set<int>(real.faces.begin(), real.faces.end())));
    }
    for (const auto& [seat, real] : truth.seats) {
      EXPECT_EQ(seen_[seat].size(), real.shown || seat == own().value() ? 2u : 0u);
    }
    seen_.clear();
  }
  /// What the server says of the table now is what this client has made of everything before.
  void compare(const ClientTableState& told) {
    ClientTableState made = client_.picture().state();
    if (made.gameID == 0) return;
    made.turnTimeLeft = told.turnTimeLeft;
    EXPECT_EQ(fieldsAsText(*make<SrvTableState>(told)), fieldsAsText(*make<SrvTableState>(made)));
    ++compared;
  }

  const PlayerClient& client_;
  std::function<const Truth&()> truth_;
  std::map<int, std::set<int>> seen_;
};

class ManyHands : public testing::TestWithParam<LimitType> {};
INSTANTIATE_TEST_SUITE_P(Games, ManyHands, testing::Values(LimitType::NoLimit, LimitType::FixedLimit),
                         [](const auto& game) { return game.param == LimitType::NoLimit ? "NoLimit" : "FixedLimit"; });

TEST_P(ManyHands, KeepEveryChipHideEveryCardAndAnswerEveryTurn) {
  constexpr std::size_t kPlayers = 9;
  const std::uint64_t hands = test::scaled(GetParam() == LimitType::NoLimit ? 10'000 : 1'000);
  ServerSettings settings = test::quickServer(hands, kPlayers);
  settings.house.tables[0].stakes.limit = GetParam();
  Place place(settings);

  std::optional<Truth> truth;
  std::uint64_t truthOf = 0;
  const auto currentTruth = [&]() -> const Truth& {
    const std::uint64_t number = place.bank().lastHandNumber();
    if (number != std::exchange(truthOf, number)) {
      truth.emplace(place.bank(), number);
      // A hand moves chips and takes rake, and that is all.
      EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
    }
    return *truth;
  };
  std::vector<std::unique_ptr<Bot>> bots;
  std::vector<std::unique_ptr<Witness>> witnesses;
  std::size_t ended = 0;
  const auto watch = [&](PlayerClient& client) {
    witnesses.push_back(std::make_unique<Witness>(client, currentTruth));
    client.observeFrames(
        [witness = witnesses.back().get()](FrameDirection direction, std::span<const std::uint8_t> frame) {
          (*witness)(direction, frame);
        });
  };
  for (unsigned i = 0; i < kPlayers; ++i) {
    bots.push_back(std::make_unique<Bot>(place.context, place.bot(i), [&](PlayerEnd end, std::string_view why) {
      EXPECT_EQ(end, PlayerEnd::Drained) << why;
      ++ended;
    }));
    watch(bots.back()->client());
    bots.back()->start();
  }
  // Somebody looks on and may see no card that is not shown.
  PlayerEvents ignored;
  PlayerSettings looksOn = place.bot(20).player;
  looksOn.sitsDown = false;
  PlayerClient onlooker(place.context, looksOn, ignored);
  watch(onlooker);
  onlooker.start();

  // Now and then somebody asks for the table anew.
  std::mt19937_64 random(3);
  std::uint64_t asked = 0;
  ASSERT_TRUE(place.runUntil(
      [&] {
        if (drawBelow(random, 500) == 0) {
          PlayerClient& client = drawBelow(random, 5) == 0 ? onlooker : bots[drawBelow(random, kPlayers)]->client();
          if (client.isAtTable()) client.send<ClConnectGame>(1u, "", "", nullptr, 0), ++asked;
        }
        return place.ended && ended == kPlayers;
      },
      std::chrono::seconds(280)));

  const Dealer::Turns& turns = place.table().turns();
  EXPECT_EQ(place.table().handsPlayed(), hands);
  EXPECT_EQ(turns.asked, turns.answered);
  EXPECT_EQ(turns.timedOut + turns.left, 0u);
  EXPECT_GT(turns.inAdvance, hands / 10);
  std::uint64_t heard = 0, compared = 0;
  for (const auto& witness : witnesses) {
    heard += witness->turns;
    compared += witness->compared;
    EXPECT_GE(witness->hands, witness == witnesses.back() ? 1u : hands);
  }
  EXPECT_GE(heard, turns.asked);
  EXPECT_LE(heard, turns.asked + asked);  // who asks for the table in its turn is asked again
  EXPECT_GE(compared, asked * 9 / 10);
  EXPECT_GT(asked, hands / 100);
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
  EXPECT_GT(place.bank().audit().rake, kZeroMoney);
}

}  // namespace
}  // namespace poker::holdem

#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/game/Blinds.h>
#include <examples/holdem/game/Hand.h>
#include <examples/holdem/server/House.h>
#include <hostkit/CommandHandle.h>

#include <asio/io_context.hpp>

#include <array>
#include <cstdint>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace poker::bench {

using namespace poker::holdem;

// The same hands for all contestants: nine players, cards by a seed, and moves that hang on the numbers of the hand and of
// the decision alone. They are played once before anything is measured; contestants play the moves again.

constexpr std::uint8_t kPlayers = 9;
constexpr std::uint64_t kHands = 500;
constexpr RealMoneyType kBuyIn = RealMoneyType::fromUnits(200);

/// What a player sends: an action for its least amount in answer to a turn, or NoAction: it brings another buy-in.
struct Move {
  std::uint8_t seat;
  UserAction action;

  bool bringsMore() const { return action == UserAction::NoAction; }
};

using Bytes = std::vector<std::uint8_t>;

inline TableSettings tableSettings() {
  TableSettings table;
  table.handPause = table.handPause.zero();
  table.startWith = kPlayers;
  table.mostHands = kHands;
  table.stakes.rake = {500, RealMoneyType::fromUnits(3)};
  table.seed = 1;
  return table;
}

inline HouseSettings houseSettings() {
  HouseSettings settings;
  settings.bank = {":memory:", 1};
  settings.gift = RealMoneyType::fromUnits(1'000'000);
  settings.tables = {tableSettings()};
  return settings;
}

inline CommonTypes::NewAccountInfo accountOf(std::uint8_t seat) {
  CommonTypes::NewAccountInfo account;
  account.userName = "Player " + std::to_string(seat);
  account.password = "secret";
  return account;
}

/// A house without sockets, with its players on their seats. What it sends ends here.
class Room : private Connections {
 public:
  std::uint64_t framesOut = 0;

  Room() : house_(context_, houseSettings(), *this) {
    for (std::uint8_t seat = 0; seat < kPlayers; ++seat) {
      house_.outbox().run([&] {
        const CommonTypes::NewAccountInfo player = accountOf(seat);
        bank().openAccount(player.userName, player.password, "", houseSettings().gift);
        house_.admit(connectionOf(seat), *bank().find(player.userName));
        house_.enterTable(connectionOf(seat), table().settings().gameID, {});
        house_.sitDown(connectionOf(seat), seat, kBuyIn);
      });
    }
  }

  Table& table() { return *house_.tables().front(); }
  Bank& bank() { return house_.bank(); }
  void runTimer() { context_.run_one(); }
  /// What the handlers of the player's commands do.
  void play(const Move& move) {
    const ConnectionID client = connectionOf(move.seat);
    const auto handle = [&](auto&& work) {
      house_.outbox().run([&] { house_.atTable(client, [&](Table& table, const Account&) { work(table); }); });
    };
    if (move.bringsMore()) return handle([&](Table& table) { table.bringMore(client, kBuyIn); });
    handle([&](Table& table) { table.acknowledgeTurn(client); });
    handle([&](Table& table) { table.act(client, move.action, kZeroMoney); });
  }

 protected:
  static ConnectionID connectionOf(std::uint8_t seat) { return ConnectionID(seat + 1); }
  static std::uint8_t seatOf(const ConnectionID& client) { return static_cast<std::uint8_t>(client.value() - 1); }

  void sendFrame(const ConnectionID&, std::span<const std::uint8_t>) override { ++framesOut; }
  void setState(const ConnectionID&, SessionState) override {}
  void disconnect(const ConnectionID&, SrvErrorDisconnected::ErrorCode) override {
    throw std::logic_error("the house sends a player away");
  }
  void hold(const ConnectionID&) override {}
  void proceed(const ConnectionID&) override {}

 private:
  asio::io_context context_{1};
  House house_;
};

/// A listener that wants to know nothing.
class NoEvents : public HandEvents {
  void onBlind(const HandPlayer&, UserAction, const RealMoneyType&) override {}
  void onDealt() override {}
  void onAction(const HandPlayer&, UserAction, const RealMoneyType&) override {}
  void onUncalled(const HandPlayer&, const RealMoneyType&) override {}
  void onRoundOver(Street) override {}
  void onBoard(Street, std::span<const Card>) override {}
  void onTurnedUp(const HandPlayer&) override {}
  bool showsAnyway(const HandPlayer&) override { return false; }
  void onOver() override {}
};

/// Deals the hands of the table from the rules alone.
class RulesOnly {
 public:
  explicit RulesOnly(std::span<const Move> moves)
      : settings_(tableSettings()), random_(*settings_.seed + settings_.gameID), moves_(moves) {
    for (std::uint8_t seat = 0; seat < kPlayers; ++seat) {
      blindsOf_[seat].seat = seat;
      blindsOf_[seat].ready = blindsOf_[seat].owesBig = true;
      stacks_[seat] = kBuyIn;
    }
  }

  /// Plays the next hand of the moves.
  /// @throws std::logic_error  it is not the hand of these moves
  void play(Hand& hand) {
    const auto plan = blinds_.next(blindsOf_, random_());
    deck_.shuffle(random_);
    hand.begin(
        settings_.stakes, *plan, [this](const SeatID& seat) { return stacks_[seat.value()]; }, deck_);
    while (hand.turn() != nullptr) {
      if (hand.turn()->seat != moves_.front().seat || !hand.act(moves_.front().action, kZeroMoney)) {
        throw std::logic_error("the hand is not the one that was recorded");
      }
      moves_ = moves_.subspan(1);
    }
    rake += hand.pots().rake();
    for (const HandPlayer& player : hand.players()) stacks_[player.seat.value()] = player.stack;
    for (; !moves_.empty() && moves_.front().bringsMore(); moves_ = moves_.subspan(1)) {
      stacks_[moves_.front().seat] += kBuyIn;
    }
  }
  const RealMoneyType& stackOf(const SeatID& seat) const { return stacks_[seat.value()]; }

  RealMoneyType rake;

 private:
  TableSettings settings_;
  std::mt19937_64 random_;
  std::span<const Move> moves_;
  Blinds blinds_;
  Deck deck_;
  std::array<BlindsSeat, kPlayers> blindsOf_;
  std::array<RealMoneyType, kPlayers> stacks_;
};

/// What was played, and what a server said.
struct PlayedHands {
  std::vector<Move> moves;
  RealMoneyType rake;
  std::uint64_t framesOut = 0;       ///< while they were played; to nine viewers: nine
  std::vector<Bytes> commands;       ///< of the first hands, each once
  std::size_t sampleMoves = 0;       ///< the moves of these hands
  std::vector<std::string> records;  ///< what the bank keeps of each hand

  /// So many hands are enough to know what their bytes cost; all of them would not fit the caches that real ones find.
  static constexpr std::uint64_t kSampleHands = 50;
};

/// Plays them at the first call.
const PlayedHands& playedHands();

template <class T>
bool isFrameOf(std::span<const std::uint8_t> frame) {
  return frame[4] == CommandInfo<T>::code && frame[5] == static_cast<std::uint8_t>(CommandInfo<T>::family);
}

/// Whether the frame asks the player who gets it for a move.
inline bool asksForMove(std::span<const std::uint8_t> frame) {
  constexpr std::size_t kNotify = 7;
  return (isFrameOf<SrvUserTurn>(frame) && frame[kNotify] != 0) || isFrameOf<OutOfMoney>(frame);
}

}  // namespace poker::bench

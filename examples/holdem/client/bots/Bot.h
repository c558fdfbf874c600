#pragma once

#include <examples/holdem/client/Later.h>
#include <examples/holdem/client/PlayerClient.h>
#include <examples/holdem/client/bots/Character.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace poker::holdem {

struct BotSettings {
  PlayerSettings player;
  Style style = Style::Tight;
  std::uint64_t seed = 1;
  RealMoneyType rebuy;                ///< what it brings when the stack is gone; zero: the buy-in
  unsigned rebuys = 0;                ///< how often at most
  std::chrono::milliseconds pause{};  ///< thinks so long about every turn
  bool chats = false;                 ///< says something now and then
  bool usesAdvance = false;           ///< a tight one folds junk before its turn
  bool postsBlinds = false;           ///< rather than wait for the big blind
  std::string readyFile;              ///< written when it has a seat; empty: none
};

/// A player that plays by itself. What it decides hangs on its seed, the cards and what the others at the table did, and
/// not on time: the same game comes of the same seeds. All calls come from the thread that runs the io_context.
class Bot final : private PlayerEvents {
 public:
  /// What is told at the end, with the reason for people. The bot may be destroyed in it.
  using Ended = std::function<void(PlayerEnd, std::string_view)>;

  Bot(asio::io_context& context, BotSettings settings, Ended ended);

  void start() { client_.start(); }
  /// Leaves the seat when the hand is over, and ends.
  void leave() { client_.leave(); }
  PlayerClient& client() { return client_; }
  const PlayerClient& client() const { return client_; }

 private:
  void onTableState() override;
  void onSeated(SeatID seat) override;
  void onUnseated() override;
  void onHandBegins() override;
  void onAction(const SrvUserActionNotify& command, const ClientSeatState& before) override;
  void onTurn(const NextTurnOptions& options, std::chrono::seconds time) override;
  void onShowDown(const SrvTUShowDown& command) override;
  void onSeatChange(const SrvUserStateOnTable& command, const ClientSeatState* before) override;
  void onOutOfMoney(const OutOfMoney& command) override;
  void onInvitation(const SrvWaitList&) override { client_.acceptInvitation(); }
  void onWaitingOver(std::uint32_t gameID) override;
  void onRefused(std::string_view why) override;
  void onEnd(PlayerEnd end, std::string_view why) override;

  Decision decide(const NextTurnOptions& options) const;
  void answer();
  void foldInAdvance();

  BotSettings settings_;
  Ended ended_;
  Character character_;
  Later pause_;
  NextTurnOptions options_;  // of the turn that is thought about
  std::uint64_t hand_ = 0;   // the number of the last one that it knows of
  std::uint64_t hands_ = 0;  // that it has seen: what is drawn by it hangs on no other table's hands
  unsigned decisions_ = 0;   // in this hand
  unsigned rebuysDone_ = 0;
  bool willFold_ = false;  // it has told so in advance, and stands by it
  std::string refusal_;
  PlayerClient client_;
};

}  // namespace poker::holdem

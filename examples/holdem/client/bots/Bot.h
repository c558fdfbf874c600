#pragma once

#include <examples/holdem/client/Later.h>
#include <examples/holdem/client/PlayerClient.h>
#include <examples/holdem/client/bots/Character.h>
#include <examples/holdem/client/tournament/TourPicture.h>

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
  unsigned rebuys = 0;                ///< how often at most, also in a tournament, where they cost what they cost
  std::chrono::milliseconds pause{};  ///< thinks so long about every turn
  bool chats = false;                 ///< says something now and then
  bool usesAdvance = false;           ///< a tight one folds junk before its turn
  bool postsBlinds = false;           ///< rather than wait for the big blind
  std::string readyFile;              ///< written when it has a seat or is registered; empty: none
  bool addsOn = false;                ///< takes a tournament's add-on when there is one
  bool followsTour = false;           ///< keeps the picture of its tournament up to date, hand by hand
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
  /// Empty unless it follows the tournament.
  const TourPicture& tourPicture() const { return tour_; }
  /// How often it has asked for more chips when its own were gone.
  unsigned rebuysDone() const { return rebuysDone_; }
  bool hasAddedOn() const { return hasAddedOn_; }

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

  void onLoggedOn() override;
  void onTourRegistration(const SrvTourRegisterResult&) override;
  void onTourStartInfo(const SrvTourStartInfo&) override { wantAddOn(); }
  void onLevelSwitch(const SrvLevelSwitch&) override { wantAddOn(); }
  void onExtraMoney(const SrvGetExtraMoneyReply& reply) override;
  void onTourOver() override { client_.leave(); }
  void onTourPicture(const SrvMultiTourInitialize& command) override { tour_.apply(command); }
  void onTourTables(const SrvUpdateTables& command) override { tour_.apply(command); }
  void onTourPlayers(const SrvUpdatePlayers& command) override { tour_.apply(command); }
  void onTourText(const SrvUpdateText& command) override { tour_.apply(command); }
  void onTourPrizes(const SrvUpdatePrizeDescr& command) override { tour_.apply(command); }
  void onTourFund(const SrvUpdatePrizeFund& command) override { tour_.apply(command); }
  void onTourSummary(const SrvMultiTourDetailedInfo& command) override { tour_.apply(command); }

  Decision decide(const NextTurnOptions& options) const;
  void answer();
  void foldInAdvance();
  void beReady();
  void followTour();
  void wantAddOn();

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
  TourPicture tour_;
  bool asksForTour_ = false;   // on this connection
  bool asksForAddOn_ = false;  // and has not been answered
  bool hasAddedOn_ = false;
  bool isAddOnOver_ = false;  // there will be none, or none any more
  PlayerClient client_;
};

}  // namespace poker::holdem

#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/core/CommandsResult.h>
#include <CommandProcessor/core/SrvTourCmdProcessor.h>

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

namespace poker::holdem {

/// What somebody in the house hears of tournaments. Answers come in the order in which was asked.
class TourEvents {
 public:
  virtual ~TourEvents() = default;

  // The lobby, for who asks.

  virtual void onTournaments(const SrvTournamentsInfo&) {}
  virtual void onTourDetails(const SrvTourDetails&) {}
  virtual void onTourMoney(const SrvTourMoney&) {}
  virtual void onTourTableInfo(const SrvTourTableInfo&) {}
  /// The whole picture. That it has come is confirmed to the server afterwards.
  virtual void onTourPicture(const SrvMultiTourInitialize&) {}
  virtual void onTourSummary(const SrvMultiTourDetailedInfo&) {}
  virtual void onTourTables(const SrvUpdateTables&) {}
  virtual void onTourPlayers(const SrvUpdatePlayers&) {}
  virtual void onTourText(const SrvUpdateText&) {}
  virtual void onTourPrizes(const SrvUpdatePrizeDescr&) {}
  virtual void onTourFund(const SrvUpdatePrizeFund&) {}
  /// Chips at the table that the player subscribed for.
  virtual void onTourPlayersMoney(const SrvUpdatePlayersMoney&) {}
  virtual void onTourProtected(const SrvTourProtectionError&) {}

  // Taking part.

  virtual void onTourRegistration(const SrvTourRegisterResult&) {}
  virtual void onTourUnregistration(const SrvTourUnregisterResult&) {}
  virtual void onTourStatus(const SrvTourTourneyStatus&) {}
  /// What the tournament, or the table, waits for.
  virtual void onTourStartInfo(const SrvTourStartInfo&) {}
  /// The blinds at the table are others now, or will be.
  virtual void onLevelSwitch(const SrvLevelSwitch&) {}
  /// The player, or who looks on, goes on at another table; its state follows.
  virtual void onTourMove(const SrvTourMoveToTable&) {}
  virtual void onTakeSeat(const SrvTakeSeatInfo&) {}
  /// The player is out, or has won.
  virtual void onTourPlayerFinished(const SrvTourPlayerFinished&) {}
  virtual void onExtraMoney(const SrvGetExtraMoneyReply&) {}
};

/// Tells listeners what the server says of tournaments.
class TourCommands final : public SrvTourCmdProcessor {
 public:
  /// Called with the tournament's number when the whole picture of one has come and was told.
  using Confirm = std::function<void(std::uint32_t)>;

  /// @param events  must outlive this object
  TourCommands(TourEvents& events, Confirm confirm) : events_(events), confirm_(std::move(confirm)) {}

  /// Somebody who hears everything before the events do. It must outlive the last dispatch.
  void tellFirst(TourEvents& listener) { first_ = &listener; }

 private:
  bool processCommand(PokerCommandTmpl<SrvTourCmdProcessorType>& command) override;
  void onSrvTourDetails(Results&, SrvTourDetails& command) override;
  void onSrvTournamentsInfo(Results&, SrvTournamentsInfo& command) override;
  void onSrvTourStartInfo(Results&, SrvTourStartInfo& command) override;
  void onSrvTourMoveToTable(Results&, SrvTourMoveToTable& command) override;
  void onSrvTourTableInfo(Results&, SrvTourTableInfo& command) override;
  void onSrvLevelSwitch(Results&, SrvLevelSwitch& command) override;
  void onSrvTourMoney(Results&, SrvTourMoney& command) override;
  void onSrvTourUnregisterResult(Results&, SrvTourUnregisterResult& command) override;
  void onSrvTourRegisterResult(Results&, SrvTourRegisterResult& command) override;
  void onSrvTourTourneyStatus(Results&, SrvTourTourneyStatus& command) override;
  void onSrvMultiTourInitialize(Results&, SrvMultiTourInitialize& command) override;
  void onSrvUpdateTables(Results&, SrvUpdateTables& command) override;
  void onSrvUpdatePlayers(Results&, SrvUpdatePlayers& command) override;
  void onSrvUpdateText(Results&, SrvUpdateText& command) override;
  void onSrvUpdatePrizeDescr(Results&, SrvUpdatePrizeDescr& command) override;
  void onSrvMultiTourDetailedInfo(Results&, SrvMultiTourDetailedInfo& command) override;
  void onSrvTourPlayerFinished(Results&, SrvTourPlayerFinished& command) override;
  void onSrvGetExtraMoneyReply(Results&, SrvGetExtraMoneyReply& command) override;
  void onSrvTourProtectionError(Results&, SrvTourProtectionError& command) override;
  void onSrvUpdatePrizeFund(Results&, SrvUpdatePrizeFund& command) override;
  void onSrvUpdatePlayersMoney(Results&, SrvUpdatePlayersMoney& command) override;
  void onSrvTakeSeatInfo(Results&, SrvTakeSeatInfo& command) override;

  template <class Command>
  void tell(void (TourEvents::*event)(const Command&), const Command& command) {
    if (first_ != nullptr) (first_->*event)(command);
    (events_.*event)(command);
  }

  TourEvents& events_;
  TourEvents* first_ = nullptr;
  Confirm confirm_;
  Results results_;
};

}  // namespace poker::holdem

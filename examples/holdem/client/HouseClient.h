#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <CommandProcessor/core/CommandsResult.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <examples/holdem/client/Later.h>
#include <examples/holdem/client/TourCommands.h>
#include <examples/holdem/shared/Endpoint.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/TcpSession.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace poker::holdem {

/// Who comes to the house, and how.
struct VisitorSettings {
  Endpoint server;
  std::string name;
  std::string password;
  bool registers = false;  ///< asks for an account first; that the name is taken is fine then, it may be its own
  std::string program;     ///< the name of a program that plays by itself; empty for a person
  std::chrono::milliseconds keepAlive = std::chrono::seconds(20);
  unsigned reconnects = 0;  ///< so often in a row it tries to come back when the connection was lost
};

/// How it ended for a player.
enum class PlayerEnd : std::uint8_t {
  Left,          ///< at the player's wish
  Drained,       ///< the server has told of maintenance and ended the session
  Refused,       ///< the server did not take the player, or sent the player away
  Lost,          ///< the connection broke and did not come back
  NoConnection,  ///< there was never one
};

/// What somebody in the house hears of, at whichever table or at none. Answers come in the order in which was asked.
class HouseEvents : public TourEvents {
 public:
  /// After coming in, and again after coming back.
  virtual void onLoggedOn() {}

  // The lobby, for who looks at it.

  virtual void onTables(const SrvServerInfo&) {}
  virtual void onCounters(const SrvServerCountersInfo&) {}
  virtual void onNews(const SrvNews&) {}
  virtual void onTableDetails(const SrvGameInfo&) {}
  virtual void onOneUser(const SrvOneUser&) {}

  // Waiting for a seat. The number is that of the table, 0 for any.

  virtual void onWaiting(std::uint32_t /*gameID*/) {}
  /// The player waits there no more, at its own wish, because the table is closed or because an invitation was too old.
  virtual void onWaitingOver(std::uint32_t /*gameID*/) {}
  /// A seat is held for the player.
  virtual void onInvitation(const SrvWaitList&) {}

  // Answers.

  virtual void onProfile(const SrvPlayerProfile&) {}
  virtual void onPicture(const SrvSendUserPic&) {}
  virtual void onPromotions(const SrvHighHandInfo&) {}
  virtual void onBonuses(const SrvPromoInfo&) {}
  virtual void onHandTexts(const SrvRplHandHistory&) {}
  virtual void onHandNumbers(const SrvRplHandHistoryList&) {}

  virtual void onPromotion(const SrvPromoNotify&) {}
  virtual void onPromotionWon(const SrvUserWonPromotion&) {}
  /// A word of the administration for the player; it may say why something is not done.
  virtual void onAdminMessage(const SrvAdminMsg& message) { onNotice(message.message()); }
  /// A text of the house for the player: maintenance, a new version, ...
  virtual void onNotice(std::string_view) {}
  /// Something that was asked for is not granted, for the reason that the text tells; the session may go on.
  virtual void onRefused(std::string_view) {}
  /// The connection was lost; the next attempt comes after the pause.
  virtual void onReconnecting(std::chrono::milliseconds) {}
  /// The last event.
  /// @param why  for people; empty when the end is just what was wanted
  virtual void onEnd(PlayerEnd, std::string_view /*why*/) {}
};

/// A player's connection to the house: comes in, registers if that is wanted, logs on, keeps itself alive, tells what it
/// hears, and comes back when the connection breaks. Any number of them share an io_context; all calls come from the thread
/// that runs it. Must not be destroyed by a listener in a call but onEnd().
class HouseClient : protected SrvCmdProcessor {
 public:
  /// What sees every frame as it travels; it sees passwords too.
  using FrameObserver = std::function<void(FrameDirection, std::span<const std::uint8_t>)>;

  /// @param events  must outlive this object
  HouseClient(asio::io_context& context, VisitorSettings settings, HouseEvents& events);
  /// Closes without a word.
  ~HouseClient() override;
  HouseClient(const HouseClient&) = delete;
  HouseClient& operator=(const HouseClient&) = delete;

  /// Connects. Everything else follows from the event loop.
  void start();
  void observeFrames(FrameObserver observer) { observer_ = std::move(observer); }

  /// Whether the connection stands and everything is there that the client comes for.
  bool isSettled() const { return isSettled_; }

  /// Sends a T, filled with `init(args...)`; nothing while there is no connection.
  template <class T, class... Args>
  void send(Args&&... args) {
    if (session_ != nullptr) session_->send(*make<T>(std::forward<Args>(args)...));
  }
  /// Says bye now, and ends with PlayerEnd::Left.
  void bye();
  /// As when the network fails: the connection breaks, without a bye.
  void breakConnection();

 protected:
  /// Logged on. Who needs more than this to be settled overrides it.
  virtual void onEntered();
  /// The attempts to come back count from anew.
  void settle();
  /// Whether the house knows who is on this connection.
  bool isLoggedOn() const { return session_ != nullptr && session_->state() >= SessionState::LoggedOn; }
  /// The player goes: whatever ends the session, it is the end that was wanted.
  void beginToLeave() { leaving_ = true; }
  bool isLeaving() const { return leaving_; }
  /// Somebody who hears of tournaments before the events do; must outlive this object.
  void tellOfToursFirst(TourEvents& listener) { tourCommands_.tellFirst(listener); }
  /// The server does not want this player: there is nothing more to do.
  void giveUp(std::string_view why);

 private:
  class Link;

  void open();
  void onOpen();
  void onClosed(CloseReason reason);
  void logOn();
  void end(PlayerEnd how, std::string_view why);

  bool processCommand(PokerCommandTmpl<SrvCmdProcessorType>& command) override;
  void onSrvHandShaked(Results&, SrvHandShaked&) override;
  void onNotAvail(Results&, ServiceNotAvailable& notice) override;
  void onSrvBusy(Results&, const SrvBusy&) override;
  void onSrvConnectError(Results&, SrvConnectError&) override;
  void onSrvErrorDisconnected(Results&, SrvErrorDisconnected& notice) override;
  void onSrvMaintenance(Results&, const SrvMaintenance& notice) override;
  void onSrvNewClientVersionAvail(Results&, const SrvNewClientVersionAvail& notice) override;
  void onSrvAdminMsg(Results&, SrvAdminMsg& notice) override;
  void onSrvRegistrationOk(Results&, SrvRegistrationOk&) override;
  void onSrvRegistrationFail(Results&, SrvRegistrationFail& refusal) override;
  void onSrvLogonOk(Results&, SrvLogonOk&) override;
  void onSrvLogonError(Results&, SrvLogonError& refusal) override;
  void onSrvServerInfo(Results&, SrvServerInfo& command) override;
  void onSrvServerCountersInfo(Results&, SrvServerCountersInfo& command) override;
  void onSrvNews(Results&, SrvNews& command) override;
  void onSrvGameInfo(Results&, SrvGameInfo& command) override;
  void onSrvOneUser(Results&, SrvOneUser& command) override;
  void onSrvAddToWaitListOk(Results&, SrvAddToWaitListOk& command) override;
  void onSrvAddToWaitListError(Results&, SrvAddToWaitListError& refusal) override;
  void onSrvRemoveFromWaitListOk(Results&, SrvRemoveFromWaitListOk& command) override;
  void onSrvRemoveFromWaitListError(Results&, SrvRemoveFromWaitListError& refusal) override;
  void onSrvWaitList(Results&, SrvWaitList& command) override;
  void onSrvPlayerProfile(Results&, const SrvPlayerProfile& command) override;
  void onSrvSendUserPic(Results&, const SrvSendUserPic& command) override;
  void onSrvHighHandInfo(Results&, SrvHighHandInfo& command) override;
  void onSrvPromoInfo(Results&, const SrvPromoInfo& command) override;
  void onSrvPromoNotify(Results&, const SrvPromoNotify& command) override;
  void onSrvUserWonPromotion(Results&, const SrvUserWonPromotion& command) override;
  void onSrvRplHandHistory(Results&, const SrvRplHandHistory& command) override;
  void onSrvRplHandHistoryList(Results&, const SrvRplHandHistoryList& command) override;

  asio::io_context& context_;
  VisitorSettings settings_;
  HouseEvents& events_;
  FrameObserver observer_;
  TourCommands tourCommands_;
  CmdDispatcher dispatcher_;
  Results results_;
  std::shared_ptr<const SessionOptions> options_;
  std::shared_ptr<TcpSession> session_;
  std::shared_ptr<Link> link_;
  Later retry_;
  std::chrono::milliseconds pause_;
  unsigned attempts_ = 0;  // in a row that have failed
  std::uint32_t keepAlives_ = 0;
  bool isSettled_ = false;
  bool wasSettled_ = false;  // ever
  bool leaving_ = false;
  bool draining_ = false;
  bool ended_ = false;
  std::string refusal_;  // why the server ends the session
  std::string trouble_;  // what was wrong with the server's bytes, or in a handler
};

}  // namespace poker::holdem

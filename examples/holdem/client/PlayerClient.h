#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <CommandProcessor/core/CommandsResult.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <examples/holdem/client/Later.h>
#include <examples/holdem/client/TablePicture.h>
#include <examples/holdem/shared/Endpoint.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/TcpSession.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace poker::holdem {

struct PlayerSettings {
  Endpoint server;
  std::string name;
  std::string password;
  bool registers = false;  ///< asks for an account first; that the name is taken is fine then, it may be its own
  std::uint32_t gameID = 1;
  std::string tablePassword;  ///< of a private table
  bool sitsDown = false;      ///< otherwise it looks on
  SeatID seat;                ///< none: any free one
  RealMoneyType buyIn;        ///< zero: a hundred big blinds, or what comes nearest
  std::string program;        ///< the name of a program that plays by itself; empty for a person
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

class PlayerClient;

/// What a player, or a program that plays, hears of. The client's picture of the table is up to date in each call, but
/// where it is said otherwise.
class PlayerEvents {
 public:
  virtual ~PlayerEvents() = default;

  /// The table as it is now: after coming in, and again after coming back.
  virtual void onTableState() {}
  /// The own seat was taken.
  virtual void onSeated(SeatID) {}
  /// The own seat is given up, at whoever's wish.
  virtual void onUnseated() {}
  /// It is the own turn. The acknowledgement is sent.
  virtual void onTurn(const NextTurnOptions&, std::chrono::seconds) {}

  virtual void onHandBegins() {}
  virtual void onDealer() {}
  /// @param before  the seat as it was
  virtual void onAction(const SrvUserActionNotify&, const ClientSeatState& /*before*/) {}
  virtual void onCardsDealt(const SrvCardDeal&) {}
  /// Anybody's turn, the own one included.
  virtual void onTurnOf(SeatID, std::chrono::seconds) {}
  virtual void onBoard(const SrvPotCardDeal&) {}
  virtual void onRoundOver(const SrvBetRoundComplete&) {}
  virtual void onCardsShown(const SrvShowPlayerCards&) {}
  /// The hand is over. The picture still shows it; the next event finds the wins in the stacks.
  virtual void onShowDown(const SrvTUShowDown&) {}
  /// @param before  null when nobody was there
  virtual void onSeatChange(const SrvUserStateOnTable&, const ClientSeatState* /*before*/) {}

  virtual void onChat(const SrvChatMsg&) {}
  virtual void onMoney(const SrvMoney&) {}
  /// The stack is gone: ClMoreMoney keeps the seat.
  virtual void onOutOfMoney(const OutOfMoney&) {}
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

/// A player's connection, or that of somebody who looks on: comes in, logs on, sits down, keeps itself alive and the
/// picture of the table up to date, and comes back when the connection breaks. Any number of them share an io_context;
/// all calls come from the thread that runs it. Must not be destroyed by a listener in a call but onEnd().
class PlayerClient final : private SrvCmdProcessor {
 public:
  /// What sees every frame as it travels; it sees passwords too.
  using FrameObserver = std::function<void(FrameDirection, std::span<const std::uint8_t>)>;

  /// @param events  must outlive this object
  PlayerClient(asio::io_context& context, PlayerSettings settings, PlayerEvents& events);
  /// Closes without a word.
  ~PlayerClient() override;
  PlayerClient(const PlayerClient&) = delete;
  PlayerClient& operator=(const PlayerClient&) = delete;

  /// Connects. Everything else follows from the event loop.
  void start();
  void observeFrames(FrameObserver observer) { observer_ = std::move(observer); }

  const PlayerSettings& settings() const { return settings_; }
  const TablePicture& picture() const { return picture_; }
  /// Whether the connection stands and the table is before the player. What players do at a table is for then.
  bool isAtTable() const { return isAtTable_; }

  /// Sends a T, filled with `init(args...)`; nothing while there is no connection.
  template <class T, class... Args>
  void send(Args&&... args) {
    if (session_ != nullptr) session_->send(*make<T>(std::forward<Args>(args)...));
  }
  /// Answers the turn; without an amount it is the least.
  void act(UserAction action, RealMoneyType amount);
  void chat(const std::string& text) { send<ClChatMsg>(text.c_str(), ChatMsgTypes::Normal); }
  /// Asks for this seat; without one for that of the settings, or for a free one.
  void sitDown(SeatID seat = {});
  /// Gives the seat up, if there is one, and looks on.
  void standUp();
  /// Gives the seat up, says bye when that is done, and ends with PlayerEnd::Left.
  void leave();
  /// Says bye now; the server keeps the seat for a while.
  void bye();
  /// As when the network fails: the connection breaks, without a bye.
  void breakConnection();

 private:
  class Link;

  void open();
  void onOpen();
  void onClosed(CloseReason reason);
  void logOn();
  /// The server does not want this player: there is nothing more to do.
  void giveUp(std::string_view why);
  void end(PlayerEnd how, std::string_view why);
  std::optional<SeatID> freeSeat() const;

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
  void onSrvRequestPass(Results&, const SrvRequestPass&) override;
  void onSrvPasswordError(Results&, const SrvPasswordError& refusal) override;
  void onSrvTableState(Results&, SrvTableState& command) override;
  void onSrvSitOk(Results&, const SrvSitOk& command) override;
  void onSrvSitError(Results&, SrvSitError& refusal) override;
  void onSrvMoney(Results&, SrvMoney& command) override;
  void onOutOfMoney(Results&, OutOfMoney& command) override;
  void onSrvUserStateOnTable(Results&, SrvUserStateOnTable& command) override;
  void onSrvUpdateHintText(Results&, SrvUpdateHintText& command) override;
  void onSrvGameStart(Results&, SrvGameStart& command) override;
  void onMoveDealChip(Results&, SrvMoveDealChip& command) override;
  void onUserActionNotify(Results&, SrvUserActionNotify& command) override;
  void onSrvTUCardDeal(Results&, SrvCardDeal& command) override;
  void onSrvUserTurn(Results&, SrvUserTurn& command) override;
  void onBetRoundComplete(Results&, SrvBetRoundComplete& command) override;
  void onSrvPotCardDeal(Results&, SrvPotCardDeal& command) override;
  void onSrvShowPlayerCards(Results&, SrvShowPlayerCards& command) override;
  void onSrvTUShowDown(Results&, SrvTUShowDown& command) override;
  void onSrvChatMsg(Results&, SrvChatMsg& command) override;

  asio::io_context& context_;
  PlayerSettings settings_;
  PlayerEvents& events_;
  FrameObserver observer_;
  CmdDispatcher dispatcher_;
  Results results_;
  TablePicture picture_;
  ClientSeatState before_;  // keeps its memory from one command to the next
  std::shared_ptr<const SessionOptions> options_;
  std::shared_ptr<TcpSession> session_;
  std::shared_ptr<Link> link_;
  Later retry_;
  std::chrono::milliseconds pause_;
  unsigned attempts_ = 0;  // in a row that have failed
  std::uint32_t keepAlives_ = 0;
  bool isAtTable_ = false;
  bool wasAtTable_ = false;  // ever
  bool leaving_ = false;
  bool draining_ = false;
  bool ended_ = false;
  std::string refusal_;  // why the server ends the session
  std::string trouble_;  // what was wrong with the server's bytes, or in a handler
};

}  // namespace poker::holdem

#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <LogUtil/Log.h>
#include <examples/holdem/server/Outbox.h>
#include <examples/holdem/server/bank/Bank.h>
#include <examples/holdem/server/bank/PasswordWorker.h>
#include <examples/holdem/server/history/HandHistory.h>
#include <examples/holdem/server/lobby/Lobby.h>
#include <examples/holdem/server/lobby/WaitLists.h>
#include <examples/holdem/server/members/Members.h>
#include <examples/holdem/server/promotions/HighHands.h>
#include <examples/holdem/server/table/RingTable.h>
#include <examples/holdem/server/tournament/TourDesk.h>
#include <examples/holdem/server/tournament/Tournaments.h>
#include <hostkit/ConnectionTable.h>
#include <hostkit/SessionState.h>

#include <asio/io_context.hpp>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace poker::holdem {

struct HouseSettings {
  BankSettings bank{":memory:"};
  RealMoneyType gift = RealMoneyType::fromUnits(1000);  ///< what a new account begins with
  HighHandSettings highHand;
  std::vector<TableSettings> tables;  ///< at most kMostTables, each with a number of its own, which is not 0
  std::vector<TourSettings> tournaments;
  unsigned mostTournaments = 3;                                     ///< that a player may be in at once
  std::chrono::milliseconds inviteTime = std::chrono::seconds(30);  ///< that a seat is held for who waited for it
  std::string news;                                                 ///< for the lobby; may be empty
};

/// What the house needs of the transport. A connection that is not there any more is passed over.
class Connections {
 public:
  virtual ~Connections() = default;

  virtual void sendFrame(const ConnectionID& connection, std::span<const std::uint8_t> frame) = 0;
  virtual void setState(const ConnectionID& connection, SessionState state) = 0;
  /// Tells the client why, and ends its connection.
  virtual void disconnect(const ConnectionID& connection, SrvErrorDisconnected::ErrorCode code) = 0;
  /// What the client sends waits from now on, until it proceeds.
  virtual void hold(const ConnectionID& connection) = 0;
  virtual void proceed(const ConnectionID& connection) = 0;
};

/// The card room: the bank, the tables, and who is logged on. It knows connections by their ids alone. All calls come
/// from the thread of the io_context; commands go out when Outbox::run() returns.
class House final : private RingTableHost, private TourHost {
 public:
  /// After so many wrong passwords in a row the connection ends.
  static constexpr unsigned kLogonTries = 3;
  /// So many accounts may be asked for on one connection: each costs the work of a password's hash.
  static constexpr unsigned kAccountTries = 3;

  /// @throws BankError
  /// @throws std::invalid_argument  the tables are not as HouseSettings wants them
  House(asio::io_context& context, HouseSettings settings, Connections& connections);

  Outbox& outbox() { return outbox_; }
  Bank& bank() { return bank_; }
  Members& members() { return members_; }
  HighHands& highHands() { return highHands_; }
  Lobby& lobby() { return lobby_; }
  WaitLists& waitLists() { return waitLists_; }
  HandHistory& history() { return history_; }
  const WaitLists::Tables& tables() const { return tables_; }
  Tournaments& tournaments() { return tournaments_; }
  TourDesk& tourDesk() { return tourDesk_; }
  Log& log() { return log_; }

  /// Both are answered when the password's hash is there; the client's further commands wait until then. When too many
  /// wait for theirs, the connection ends.
  void openAccount(const ConnectionID& client, const CommonTypes::NewAccountInfo& form);
  void logOn(const ConnectionID& client, const std::string& name, const std::string& password);
  /// The client has proved that the account is its own.
  void admit(const ConnectionID& client, Account account);
  /// The client looks at that table from now on, and at no other one.
  void enterTable(const ConnectionID& client, std::uint32_t gameID, const std::string& password);
  /// Another try at the table that the client was last asked a password for.
  void tellPassword(const ConnectionID& client, const std::string& password);
  void sitDown(const ConnectionID& client, const SeatID& seat, const RealMoneyType& money);
  /// The client comes to sit on the seat that is held for it.
  void acceptInvitation(const ConnectionID& client, std::uint32_t gameID, const std::string& reservation,
                        const RealMoneyType& money);
  /// The connection is gone.
  void leave(const ConnectionID& client);

  /// Calls `f(table, account)` when the client is logged on and looks at a table.
  template <class F>
  void atTable(const ConnectionID& client, F&& f) {
    const auto place = visitors_.find(client.value());
    if (place != visitors_.end() && place->second.account && place->second.table != nullptr) {
      f(*place->second.table, *place->second.account);
    }
  }

  /// The table that the client looks at; null when it looks at none.
  const Table* tableOf(const ConnectionID& client) const {
    const auto visitor = visitors_.find(client.value());
    return visitor != visitors_.end() ? visitor->second.table : nullptr;
  }

  /// Calls `f(account)` when the client is logged on.
  template <class F>
  void forPlayer(const ConnectionID& client, F&& f) {
    const auto visitor = visitors_.find(client.value());
    if (visitor != visitors_.end() && visitor->second.account) f(*visitor->second.account);
  }

  /// Closes all tables, and calls off the tournaments that are not over; `closed` is called when the last hand is over.
  void close(std::function<void()> closed);
  /// All tables have played their hands, and all tournaments are over. Not called for a house without ring games before
  /// it is closed.
  std::function<void()> onAllTablesClosed;

  /// Logs how turns ended, what everybody has, and whether that is what the house has given out.
  /// @return whether it is
  bool report();

 private:
  struct Visitor {
    std::optional<Account> account;
    Table* table = nullptr;
    Table* wanted = nullptr;  // asks for a password
    unsigned tries = 0;       // wrong passwords in a row
    unsigned accounts = 0;    // that were asked for
  };

  std::uint64_t nextHandNumber() override { return ++lastHand_; }
  ConnectionID connectionOf(AccountID account) override { return players_.find(account); }
  void bringTo(const ConnectionID& connection, Table& table) override;
  void onHandBegins() override { highHands_.onHandBegins(); }
  void finishHand(const FinishedHand& booking, const Hand& hand) override;
  void onSeated(const ConnectionID& connection, bool seated) override;
  void onHandOver(std::uint32_t gameID, std::uint64_t handsPlayed) override;
  void onTableClosed() override { --openTables_; }
  void onTableChanged() override { lobby_.noteChange(); }
  void onSeatsChanged(RingTable& table) override { waitLists_.noteChange(table); }

  WaitLists::Tables makeTables(asio::io_context& context, std::vector<TableSettings> settings);
  Table* findTable(std::uint32_t gameID);
  void settle();
  void await(const ConnectionID& client, bool isQueued);
  template <class Work>
  void answerLate(const ConnectionID& client, Work&& work);
  void refuseLogon(const ConnectionID& client, Visitor& visitor, const std::string& name);
  void enter(const ConnectionID& client, Visitor& visitor, Table& table);

  Connections& connections_;
  Log& log_;
  Bank bank_;
  Members members_;
  HandHistory history_{bank_, log_};
  RealMoneyType gift_;
  Outbox outbox_;
  HighHands highHands_;
  WaitLists::Tables tables_;
  WaitLists waitLists_;
  Lobby lobby_;
  Tournaments tournaments_;
  TourDesk tourDesk_;
  std::map<std::int32_t, Visitor> visitors_;
  ConnectionOf<AccountID> players_;
  std::uint64_t lastHand_ = 0;
  std::size_t openTables_ = 0;
  bool isClosing_ = false;
  PasswordWorker passwords_;
};

}  // namespace poker::holdem

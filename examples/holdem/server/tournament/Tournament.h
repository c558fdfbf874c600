#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <LogUtil/Log.h>
#include <examples/holdem/game/Deck.h>
#include <examples/holdem/server/bank/TourBank.h>
#include <examples/holdem/server/table/TourTable.h>
#include <examples/holdem/server/tournament/TourBoard.h>
#include <examples/holdem/server/tournament/TourClock.h>
#include <examples/holdem/server/tournament/TourFund.h>
#include <examples/holdem/server/tournament/TourSettings.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <variant>
#include <vector>

namespace poker::holdem {

/// What a tournament needs of the server around it.
class TourHost {
 public:
  virtual ~TourHost() = default;

  /// Numbers hands through all tables.
  virtual std::uint64_t nextHandNumber() = 0;
  /// A connection speaks for a seat now, or for none any more.
  virtual void onSeated(const ConnectionID& connection, bool seated) = 0;
  /// The invalid id when the player is not logged on.
  virtual ConnectionID connectionOf(AccountID account) = 0;
  /// Lets the connection look at that table, if it sits at no other one.
  virtual void bringTo(const ConnectionID& connection, Table& table) = 0;
};

/// One tournament, from its announcement to the last player: who is in it, its tables, its clock, its prizes. What follows
/// from an event is done when the event ends (settle()), so that nobody is moved in the middle of a hand. Everything that
/// it says goes to the outbox. All calls come from the thread of the io_context; what the bank throws passes through.
class Tournament final : private TourTableHost {
 public:
  /// Numbers of tables: that of the tournament times this, and a number from 1 on.
  static constexpr std::uint32_t kTablesEach = 10'000;

  /// A player, from registration on.
  struct Player {
    Account account;
    std::string city;
    TourTable* table = nullptr;  ///< null before the seats are drawn, and for who is out
    std::uint32_t rebuys = 0;    ///< made so far
    bool hasAddOn = false;
    std::uint32_t wantsRebuys = 0;  ///< when the hand is over
    bool wantsAddOn = false;        ///< when the hand is over
    std::uint32_t place = 0;        ///< 0: still in it
    RealMoneyType prize;
  };

  /// All references must outlive the tournament.
  Tournament(asio::io_context& context, TourSettings settings, TourBank& bank, Bank& accounts, Outbox& outbox,
             TourHost& host);

  std::uint32_t id() const { return id_; }
  const TourSettings& settings() const { return settings_; }
  TOUR_NAMES::TourStatus status() const { return status_; }
  bool isOver() const { return status_ == TOUR_NAMES::TourStatus::Finished; }
  bool hasBegun() const { return status_ > TOUR_NAMES::TourStatus::Registering; }
  const TourBoard& board() const { return board_; }
  /// Another number, above 0, whenever something has changed that the list or the details show.
  std::uint32_t changes() const { return changes_; }
  /// Those who are in it, or were. By account.
  const std::map<AccountID, Player>& players() const { return players_; }
  /// Null for who is not registered.
  const Player* player(AccountID account) const;
  /// Those who have no place yet.
  std::size_t playersLeft() const { return playersLeft_; }
  /// Null for a table that is not there, or not any more.
  TourTable* table(std::uint32_t tableID);
  /// Calls `f(table)` for each open table.
  template <class F>
  void forEachTable(F&& f) {
    for (OpenTable& open : tables_) f(*open.table);
  }
  /// All chips that were handed out.
  RealMoneyType chipsInPlay() const { return chipsInPlay_; }
  /// Whether the account may look at more than its line in the list.
  bool mayLook(AccountID account) const { return settings_.password.empty() || player(account) != nullptr; }

  // What the lobby shows beside the board.

  void describe(TourListEntry& line) const;
  TournamentDetailedInfo details() const;
  MultiTourMoneyInfo money() const;
  MultiStartInfo times() const;
  MultiTourneyInfo numbers() const;
  /// Buy-in and fee, which is what registration costs.
  TourMoneyType price() const { return {settings_.buyIn + settings_.fee, kZeroMoney}; }

  // What players ask for.

  /// @param choice  how the player pays; empty: as it is paid here
  /// @param mayPlayInMore  whether the player is in fewer tournaments than it may be in
  SrvTourRegisterResult::Reason enter(const Account& account, const std::string& city, const std::string& password,
                                      const TourMoneyChooser& choice, bool mayPlayInMore);
  SrvTourUnregisterResult::Reason withdraw(AccountID account);
  /// Brings the player to its table, if there is one.
  void bringToTable(AccountID account);
  /// Lets somebody look at one of the tables, if there is one.
  void showSomeTable(const ConnectionID& client);
  void getExtraMoney(const ConnectionID& client, AccountID account, const ClGetExtraMoney& request);
  /// Tells a player who has just logged on how it stands.
  void welcome(const ConnectionID& client, AccountID account);

  /// The host stops all tables after their hands; one that has not started does so and stops.
  void suspend();
  void resume();
  /// Calls it off as soon as no hand is played.
  void close();

  /// Does what has become due. To be called at the end of every event.
  void settle();

 private:
  using Status = TOUR_NAMES::TourStatus;
  using Reply = SrvGetExtraMoneyReply::Reason;
  using Moment = std::optional<Clock::time_point>;  // nothing: never

  /// A player whose last chips are lost.
  struct Bust {
    AccountID account;
    TourTable* table;
    std::uint64_t hand;
    RealMoneyType before;    // the stack at the beginning of that hand
    std::size_t fromButton;  // so many players sit nearer to the left of it
    Clock::time_point found;
    Clock::time_point rebuyUntil;  // it may buy more; min() for who may not
  };
  struct OpenTable {
    std::unique_ptr<TourTable> table;
    std::optional<FinishedHand> played;  // a hand that is over and has not been looked at
    Moment absentUntil;                  // nobody is there, and it waits so long
    bool isLonely = false;               // one player, who was told to wait for others
    bool isLookedAt = false;             // its last hand; another one may begin
    std::int16_t level = 0;              // of its last hand; 0 before the first
  };

  std::uint64_t nextHandNumber() override { return host_.nextHandNumber(); }
  void onSeated(const ConnectionID& connection, bool seated) override { host_.onSeated(connection, seated); }
  void onTableChanged() override {}
  bool mayBegin(TourTable& table) override;
  void onHandBegins(TourTable& table) override;
  void bookHand(TourTable& table, const FinishedHand& booking, const Hand& hand) override;
  void onHandOver(TourTable& table) override;
  void onEntered(TourTable& table, const ConnectionID& viewer, const Seat* seat) override;

  void changed() {
    ++changes_;
    isDue_ = true;
  }
  void setStatus(Status status);
  bool step(Clock::time_point now);
  bool stepBeforeStart(Clock::time_point now);
  bool stepPlay(Clock::time_point now);
  bool stepClock(Clock::time_point now);
  void armTimer();

  std::uint32_t playersWanted() const;
  bool isCountNew() const;
  void tellCountdown(Clock::time_point now);
  void drawSeats(Clock::time_point now);
  void halt(Clock::time_point now);
  void finish();
  void closeTables();
  void callOff(const std::string& why);

  void lookAtHand(OpenTable& open);
  void checkChips();
  void findBusts(OpenTable& open);
  bool isBustAt(const TourTable& table) const;
  bool eliminateOne(Clock::time_point now);
  void eliminate(const Bust& bust);
  void givePlace(Player& player);

  bool rearrange();
  void breakTable(std::uint32_t tableID);
  void movePlayer(AccountID account, TourTable& from, TourTable& to);
  void sendToTable(AccountID account, TourTable& table);
  TourTable& smallestTable();
  bool allIdle() const;
  void wakeTables();
  void tellLonely();
  OpenTable& find(const TourTable& table);
  void show(const Player& player);
  void show(TourTable& table);

  bool mayRebuy(AccountID account) const;
  Reply whyNotBuy(Player& player, const ClGetExtraMoney& request) const;
  Reply buy(Player& player, ExtraMoneyRequest type, std::uint32_t count);
  void answer(const Player& player, ExtraMoneyRequest type, Reply reason, bool hadChips);
  void offerAddOn();
  void tellAddOn(const ConnectionID& client);
  void makeFundFinal();
  void showFund();

  template <class Target>
  void tellLevel(const Target& to, const BlindLevel& blinds, std::int16_t level, bool isSwitching,
                 Clock::time_point now);
  template <class Target>
  void tellNextLevel(const Target& to, Clock::time_point now);
  template <class Target>
  void tellWaitForMove(const Target& to);
  template <class T, class... Args>
  void tellPlayers(Args&&... args);
  template <class T, class... Args>
  void tellTables(Args&&... args);
  void tellNews(const std::string& text) { board_.setText(MultiTourText::News, text); }
  std::uint64_t draw();

  asio::io_context& context_;
  const TourSettings settings_;
  TourBank& bank_;
  Bank& accounts_;
  Outbox& outbox_;
  TourHost& host_;
  Log& log_;
  const std::uint32_t id_;
  TourBoard board_;
  TourFund fund_;
  TourClock clock_;
  std::variant<SystemRandom, std::mt19937_64> random_;
  const std::chrono::system_clock::time_point announcedAt_;

  Status status_ = Status::Announced;
  bool isClosing_ = false;
  bool isPrizeAwarded_ = false;
  std::uint32_t changes_ = 1;
  std::map<AccountID, Player> players_;
  std::size_t playersLeft_ = 0;
  RealMoneyType chipsInPlay_;
  std::vector<OpenTable> tables_;
  std::vector<std::unique_ptr<TourTable>> brokenTables_;  // somebody may still look at them
  std::uint32_t tablesOpened_ = 0;
  std::vector<Bust> busts_;  // in the order in which they would go

  const Clock::time_point opensAt_;
  const Moment startsAt_;
  Moment noticeAt_;                // of the seconds to the start
  std::uint32_t playersTold_ = 0;  // that were wanted
  Moment firstHandAt_;
  Clock::time_point countTold_{};  // when playersTold_ was
  Clock::time_point suspendedAt_;
  bool isHostStopping_ = false;
  std::string calledOff_;  // why; empty when it is not
  bool isAddOnOffered_ = false;

  bool isAllChanged_ = false;  // for each table
  bool isDue_ = true;
  asio::steady_timer timer_;
};

}  // namespace poker::holdem

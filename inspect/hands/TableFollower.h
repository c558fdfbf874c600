#pragma once

#include <CommandProcessor/core/ProcessorFamily.h>
#include <inspect/hands/HandAudit.h>
#include <inspect/hands/HandView.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace poker {

/// What everybody at the table is told alike.
struct PublicWord {
  SaidAt at;
  std::string_view command;  ///< the class
  SeatID seat;
  UserAction action = UserAction::NoAction;
  RealMoneyType first;
  RealMoneyType second;
  std::uint64_t meaning = 0;  ///< equal for what means the same

  /// "seat 3 calls, 20.00 before it and 45.00 left".
  std::string text() const;
};

/// One hand as one connection is told it, and what is wrong with that.
struct SeenHand {
  template <class... Args>
  explicit SeenHand(std::shared_ptr<const std::string> who, Args&&... args)
      : connection(std::move(who)), view(std::forward<Args>(args)...), audit(view) {}
  SeenHand(const SeenHand&) = delete;
  SeenHand& operator=(const SeenHand&) = delete;

  std::shared_ptr<const std::string> connection;
  HandView view;
  HandAudit audit;
  std::vector<PublicWord> words;
  std::uint64_t meaning = 0;  ///< of all words so far
  SaidAt dealtAt;
  bool isOpen = true;  ///< more of it may come
};

/// A fault outside of hands.
struct FaultBetween {
  HandFault fault;
  std::string table;
  std::uint64_t afterHand = 0;  ///< 0: not known
};

class TableFollower;

/// Hears of the hands that a connection sees.
class FollowerEvents {
 public:
  virtual ~FollowerEvents() = default;

  virtual void onTable(TableFollower& follower) = 0;  ///< it looks at another table
  virtual void onBegin(TableFollower& follower, std::shared_ptr<SeenHand> hand) = 0;
  virtual void onEnd(TableFollower& follower, SeenHand& hand) = 0;  ///< it is over, or not seen any more
  virtual void onScript(TableFollower& follower) = 0;               ///< it fixes the next hand at its table
};

/// Follows what one connection says and is told, from table to table and from hand to hand.
class TableFollower {
 public:
  /// The hint of SrvUpdateHintText that is the number of the table's hand, in digits.
  static constexpr unsigned kHandNumberHint = 1;

  /// @param events  must outlive the follower
  TableFollower(std::string connection, FollowerEvents& events)
      : connection_(std::make_shared<const std::string>(std::move(connection))), events_(events) {}

  /// Whether commands of that pair tell something here.
  static bool wants(ProcessorFamily family, std::uint8_t code);
  /// @param frame  the one that holds the command, or a batch with the command
  void take(const CapturedFrame& frame, const PokerCommandI& command, ProcessorFamily family, std::uint8_t code);
  /// Something of the connection was lost: what is known of its table may not hold any more.
  void lose();

  const std::string& connection() const { return *connection_; }
  const TableFacts& table() const { return table_; }
  /// By which the table is known among all; empty: not at all.
  const std::string& key() const { return key_; }
  /// The button and the blinds of the next hand are not what follows from the last one.
  void noteScript() { isScripted_ = true; }
  std::uint64_t lastFrame() const { return at_.command; }
  /// What was wrong since the last call, outside of hands.
  std::vector<FaultBetween> takeFaults() { return std::exchange(between_, {}); }

 private:
  void on(const SrvTableState& command);
  void on(const SrvUserStateOnTable& command);
  void on(const SrvUpdateHintText& command);
  void on(const SrvGameStart& command);
  void on(const SrvUserTurn& command);
  void on(const SrvLevelSwitch& command);
  template <class T>
  void told(const T& command);

  void beAt(const TableFacts& table);
  void leaveHand();
  void endHand();
  void add(PublicWord word);
  void learnSeat(const UserCardsInfoVector& hands);
  void outside(std::string_view what);
  void faultBetween(std::string text);

  std::shared_ptr<const std::string> connection_;
  FollowerEvents& events_;
  TableFacts table_;
  std::string key_;
  std::string frameTable_;  // as the capture tells it
  std::uint32_t toldTournament_ = 0;
  std::uint32_t toldGame_ = 0;
  std::vector<TableSeat> seats_;
  SeatID ownSeat_;
  bool knowsSeat_ = false;
  std::shared_ptr<SeenHand> hand_;
  std::shared_ptr<const SeenHand> last_;  // none when it is not the one before
  std::optional<std::uint64_t> number_;   // of the hand that is about to begin
  std::uint64_t lastNumber_ = 0;
  bool isBetween_ = false;  // it is known that no hand is played
  OwnTurn own_;
  std::uint32_t chosenNow_ = 0;
  bool isScripted_ = false;
  SaidAt at_;
  std::optional<std::int64_t> time_;
  std::vector<FaultBetween> between_;
};

}  // namespace poker

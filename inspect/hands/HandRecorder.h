#pragma once

#include <inspect/hands/TableFollower.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace poker {

/// Something that is wrong in what a server told.
struct HandFinding {
  std::uint64_t hand = 0;  ///< 0: not known
  bool isAfter = false;    ///< between that hand and the next one
  std::string table;
  SaidAt at;
  std::string connection;
  std::string text;
  std::size_t others = 0;  ///< how many more connections were told the same

  /// `hand 17, table "Oslo", command 4711 at offset 123456 to 127.0.0.1:50001: seat 3 is shown ...`, without a line's end.
  std::string line() const;
};

/// A hand as all connections together saw it.
class RecordedHand {
 public:
  std::uint64_t number() const { return views_.front()->view.number(); }
  /// The table's name; by which the capture tells it from others.
  const std::string& tableName() const { return view().tableName(); }
  const std::string& tableLabel() const { return view().label(); }
  /// Whether somebody saw it from its beginning to its end.
  bool isWhole() const { return best_ != nullptr; }

  /// As the server knows it: with all hole cards that any connection was told. It must be whole.
  HandStory story() const;
  /// As the connection was told it that spoke for the seat; none when there was no such one, or it did not see all.
  std::optional<HandStory> storyOf(const SeatID& seat) const;
  /// The same by the player's name.
  std::optional<HandStory> storyOf(std::string_view name) const;

  /// What is wrong with it, in the order of the commands.
  const std::vector<HandFinding>& findings() const { return findings_; }

 private:
  friend class HandRecorder;

  const HandView& view() const { return best_ != nullptr ? best_->view : views_.front()->view; }

  void judge();
  void compare(const SeenHand& view);
  void findDoubles();
  std::vector<Card> cardsOf(const SeatID& seat) const;

  std::vector<std::shared_ptr<SeenHand>> views_;  // one at least
  const SeenHand* best_ = nullptr;                // what most were told, of those who saw all
  std::vector<HandFinding> findings_;
};

/// Follows all connections of a capture, joins what those at one table are told, and hands each hand out when it is over,
/// in the order in which they ended. Holds no more than the hands that are played, and a few that some connection may not
/// have heard the end of. One thread.
class HandRecorder final : private FollowerEvents {
 public:
  /// After so many later hands at a table, or so many commands of any connection, a connection that has not told a
  /// hand's end is believed to be gone.
  static constexpr std::size_t kMostLaterHands = 8;
  static constexpr std::uint64_t kMostLaterCommands = 50'000;
  /// A connection that says and hears nothing for so many commands is forgotten.
  static constexpr std::uint64_t kMostSilence = 1'000'000;

  using OnHand = std::function<void(const RecordedHand&)>;
  using OnFinding = std::function<void(const HandFinding&)>;

  /// @param onFinding  of what is wrong outside of hands
  HandRecorder(OnHand onHand, OnFinding onFinding) : onHand_(std::move(onHand)), onFinding_(std::move(onFinding)) {}

  static bool wants(ProcessorFamily family, std::uint8_t code) { return TableFollower::wants(family, code); }
  /// @param command  what the frame holds, of a class that is wanted
  void take(const CapturedFrame& frame, const PokerCommandI& command);
  /// A frame of the connection cannot be read.
  void lose(std::string_view connection);
  /// Hands out what is left.
  void finish();

  std::size_t connections() const { return seenConnections_; }

 private:
  struct Room;
  struct Joined {
    RecordedHand hand;
    Room* room = nullptr;
    std::uint64_t ordinal = 0;             // in its room
    std::optional<std::uint64_t> endedAt;  // the command that first told the end
    std::uint64_t lastAt = 0;
    std::uint64_t roomEnds = 0;  // how many hands had ended there
    bool isQueued = false;
  };
  /// A table, and who looks at it.
  struct Room {
    std::map<TableFollower*, std::uint64_t> here;  // with the ordinal of the last hand
    std::deque<std::shared_ptr<Joined>> hands;     // not handed out
    std::uint64_t hands_ = 0;
    std::uint64_t ends = 0;
    std::uint64_t lastAt = 0;
  };
  struct Client {
    std::unique_ptr<TableFollower> follower;
    Room* room = nullptr;
    std::uint64_t lastAt = 0;
  };

  void onTable(TableFollower& follower) override;
  void onBegin(TableFollower& follower, std::shared_ptr<SeenHand> hand) override;
  void onEnd(TableFollower& follower, SeenHand& hand) override;
  void onScript(TableFollower& follower) override;

  Client& clientOf(std::string_view connection);
  Client& clientOf(TableFollower& follower) { return clients_.find(follower.connection())->second; }
  void leaveRoom(Client& client);
  void goWhere(Client& client, std::uint64_t number);
  bool isReady(const Joined& joined) const;
  void queue(const std::shared_ptr<Joined>& joined);
  void pump();
  void handOut(Joined& joined);
  void sweep();
  void takeFaults(TableFollower& follower);
  void flushFaults();

  OnHand onHand_;
  OnFinding onFinding_;
  std::map<std::string, Client, std::less<>> clients_;
  std::map<std::string, Room> rooms_;
  std::deque<std::shared_ptr<Joined>> queue_;  // in the order in which they ended
  std::deque<HandFinding> between_;            // until others may have been told the same
  std::uint64_t now_ = 0;
  std::uint64_t lastSweep_ = 0;
  std::size_t seenConnections_ = 0;
};

}  // namespace poker

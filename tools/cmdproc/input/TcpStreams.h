#pragma once

#include <hostkit/StreamFramer.h>
#include <inspect/capture/CapturedFrame.h>
#include <tools/cmdproc/input/Packet.h>

#include <tins/tcp_ip/data_tracker.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace poker::cmdproc {

/// One direction of a connection: from segments in any order to frames.
class TcpDirection {
 public:
  explicit TcpDirection(std::uint32_t longestFrame);

  bool isStarted() const { return started_; }
  /// Where the stream begins.
  /// @param whole  that is known, and not just where the capture has come in
  void start(std::uint32_t sequence, bool whole);
  std::uint32_t begin() const { return begin_; }

  /// Takes what a segment carries.
  /// @return whether there are bytes to cut now
  bool take(std::uint32_t sequence, std::vector<std::uint8_t> payload);
  void endAt(std::uint32_t sequence) { end_ = sequence; }
  /// Whether all bytes up to the peer's FIN have come.
  bool isComplete() const { return end_ && tracker_.sequence_number() == *end_; }
  /// Nothing else will come: what waits for missing bytes is cut, too, and then the rest is told of.
  void finish() { finishing_ = true; }
  /// No more frames.
  void drop();

  enum class Result : std::uint8_t { Frame, Problem, NotCommands, Nothing };
  /// The next frame or problem of what has come. NotCommands: the bytes are of something else.
  Result next(CapturedFrame& frame);
  /// Of the bytes that had to be passed over until a command was found; to be told once.
  std::uint64_t takeSkipped() { return std::exchange(skipped_, 0); }

 private:
  enum class State : std::uint8_t {
    First,      // the first bytes must be a command's
    Searching,  // for the next whole command
    Following,
    Dropped,
  };

  bool hasHole() const { return !tracker_.buffered_payload().empty(); }
  bool holdsTooMuch() const;
  std::uint64_t passHole();
  bool search();
  Result problem(CapturedFrame& frame, std::string text);

  Tins::TCPIP::DataTracker tracker_;
  std::vector<std::uint8_t> waiting_;  // in order, not cut yet
  std::size_t taken_ = 0;              // of these
  StreamFramer framer_;
  std::uint32_t longestFrame_;
  State state_ = State::First;
  bool started_ = false;
  bool finishing_ = false;
  std::uint32_t begin_ = 0;
  std::optional<std::uint32_t> end_;
  std::uint64_t offset_ = 0;  // of the frame that comes next
  std::uint64_t skipped_ = 0;
  std::uint64_t searched_ = 0;
  std::string problem_;
};

/// Frames of all connections of a capture.
class TcpStreams {
 public:
  /// @param note  for what is passed over: a line
  TcpStreams(std::uint32_t longestFrame, std::function<void(const std::string&)> note)
      : longestFrame_(longestFrame), note_(std::move(note)) {}

  /// Takes the next segment; next() then has what it completes.
  void take(Segment segment, std::int64_t time);
  /// The capture is over.
  void finish();
  /// The next frame; what it points to is valid until the next call of anything.
  /// @return false when another segment is needed
  bool next(CapturedFrame& frame);

 private:
  using Ends = std::array<NetworkEnd, 2>;
  struct Connection {
    Connection(const Ends& both, std::uint32_t longestFrame)
        : ends(both), directions{TcpDirection(longestFrame), TcpDirection(longestFrame)} {}

    Ends ends;  // each speaks in the direction of the same index
    std::array<TcpDirection, 2> directions;
    std::optional<std::size_t> client;  // which end
    bool isClientSure = false;          // a class has told it
    std::string clientText;
  };
  struct Less {
    bool operator()(const Ends& a, const Ends& b) const;
  };
  /// By both ends, the lesser first. Null for one that is over, of which segments may still come late.
  using Connections = std::map<Ends, std::unique_ptr<Connection>, Less>;
  struct Due {
    Connection* connection;
    std::size_t side;
  };

  void finish(std::unique_ptr<Connection> connection);
  void finish(Connections::iterator place);
  bool tell(Connection& connection, std::size_t side, CapturedFrame& frame);
  void learnClient(Connection& connection, std::size_t side, std::span<const std::uint8_t> frame);
  static std::string nameOf(const Connection& connection);

  std::uint32_t longestFrame_;
  std::function<void(const std::string&)> note_;
  Connections connections_;
  std::deque<Ends> over_;  // in the order in which they ended
  std::deque<Due> due_;    // may have frames
  std::vector<std::unique_ptr<Connection>> ending_;
  std::int64_t time_ = 0;
  std::uint64_t frames_ = 0;
};

}  // namespace poker::cmdproc

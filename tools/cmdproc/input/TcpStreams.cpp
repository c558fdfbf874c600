#include <inspect/schema/WireWalk.h>
#include <tools/cmdproc/input/TcpStreams.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace poker::cmdproc {

namespace {

/// Bytes, and pieces of them, that wait for missing ones. More than a connection has under way: these will not come.
constexpr std::uint32_t kMostOutOfOrder = 8 * 1024 * 1024;
constexpr std::size_t kMostPieces = 8 * 1024;
/// A search looks for commands that lie whole within so many bytes ...
constexpr std::size_t kSearchWindow = 128 * 1024;
/// ... and gives up after so many.
constexpr std::uint64_t kMostSearched = 4 * 1024 * 1024;
constexpr std::size_t kMostRemembered = 10'000;

std::uint32_t lengthIn(std::span<const std::uint8_t> bytes) {
  std::uint32_t length = 0;
  for (std::size_t i = kLengthSlot; i-- > 0;) length = length << 8 | bytes[i];
  return length;
}

std::span<const CommandDescription> classesIn(std::span<const std::uint8_t> frame) {
  return findCommands(static_cast<ProcessorFamily>(frame[kLengthSlot + 1]), frame[kLengthSlot]);
}

/// @param bytes  at least kShortestFrame
bool looksLikeFrame(std::span<const std::uint8_t> bytes, std::uint32_t longestFrame) {
  const std::uint32_t length = lengthIn(bytes);
  return length >= kShortestFrame && length <= longestFrame && !classesIn(bytes).empty();
}

/// Whether a whole command stands at the front that can be read to its end.
bool beginsWithCommand(std::span<const std::uint8_t> bytes) {
  if (!looksLikeFrame(bytes, static_cast<std::uint32_t>(bytes.size()))) return false;
  const auto command = bytes.subspan(kLengthSlot, lengthIn(bytes) - kLengthSlot);
  const auto classes = classesIn(bytes);
  return std::any_of(classes.begin(), classes.end(), [&](const CommandDescription& row) {
    return !walkCommand(*CommandSchema::find(row.name), command, [](const WirePiece&) {});
  });
}

}  // namespace

// One direction

TcpDirection::TcpDirection(std::uint32_t longestFrame)
    : framer_({.beforeLogon = longestFrame, .afterLogon = longestFrame, .picture = longestFrame}),
      longestFrame_(longestFrame) {}

void TcpDirection::start(std::uint32_t sequence, bool whole) {
  started_ = true;
  begin_ = sequence;
  tracker_.sequence_number(sequence);
  if (!whole) state_ = State::Searching;
}

bool TcpDirection::take(std::uint32_t sequence, std::vector<std::uint8_t> payload) {
  if (state_ == State::Dropped) return false;
  if (!started_) start(sequence, false);
  if (tracker_.process_payload(sequence, std::move(payload))) {
    waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(std::exchange(taken_, 0)));
    waiting_.insert(waiting_.end(), tracker_.payload().begin(), tracker_.payload().end());
    tracker_.payload().clear();
    return true;
  }
  return holdsTooMuch();
}

bool TcpDirection::holdsTooMuch() const {
  return tracker_.total_buffered_bytes() > kMostOutOfOrder || tracker_.buffered_payload().size() > kMostPieces;
}

void TcpDirection::drop() {
  state_ = State::Dropped;
  waiting_ = {};
  taken_ = 0;
  tracker_ = {};
  framer_.reset();
}

/// Goes on behind the bytes that are missing.
/// @return how many these are
std::uint64_t TcpDirection::passHole() {
  const std::uint32_t here = tracker_.sequence_number();
  const auto& pieces = tracker_.buffered_payload();
  // Sequence numbers wrap around.
  const auto next = std::min_element(pieces.begin(), pieces.end(), [&](const auto& a, const auto& b) {
    return static_cast<std::uint32_t>(a.first - here) < static_cast<std::uint32_t>(b.first - here);
  });
  const std::uint32_t sequence = next->first;
  std::vector<std::uint8_t> piece = next->second;
  tracker_.sequence_number(sequence);
  take(sequence, std::move(piece));
  return sequence - here;
}

/// @return whether a command begins at the front of what waits now
bool TcpDirection::search() {
  const std::span<const std::uint8_t> bytes = std::span(waiting_).subspan(taken_);
  std::size_t passed = 0;
  bool found = false;
  while (!found && passed + kShortestFrame <= bytes.size()) {
    found = beginsWithCommand(bytes.subspan(passed));
    if (!found) ++passed;
  }
  if (!found) {
    // One may have begun whose end has not come.
    passed = finishing_ ? bytes.size() : bytes.size() > kSearchWindow ? bytes.size() - kSearchWindow / 2 : 0;
    searched_ += passed;
  }
  taken_ += passed;
  offset_ += passed;
  skipped_ += passed;
  return found;
}

TcpDirection::Result TcpDirection::problem(CapturedFrame& frame, std::string text) {
  problem_ = std::move(text);
  frame = {.offset = offset_, .problem = problem_};
  return Result::Problem;
}

TcpDirection::Result TcpDirection::next(CapturedFrame& frame) {
  for (;;) {
    const std::span<const std::uint8_t> bytes = std::span(waiting_).subspan(taken_);
    if (state_ == State::Dropped) return Result::Nothing;
    if (state_ == State::First && bytes.size() >= kShortestFrame) {
      if (!looksLikeFrame(bytes, longestFrame_)) return Result::NotCommands;
      state_ = State::Following;
    }
    if (state_ == State::Searching) {
      if (search()) {
        state_ = State::Following;
        searched_ = 0;
        continue;
      }
      if (searched_ > kMostSearched) return Result::NotCommands;
    }
    if (state_ == State::Following) {
      Frame found;
      switch (framer_.next(found)) {
        case StreamFramer::Result::Frame:
          frame = {.bytes = found.bytes, .offset = offset_};
          offset_ += found.bytes.size();
          return Result::Frame;
        case StreamFramer::Result::Error: {
          const Result result = problem(frame, framer_.error().message());
          drop();
          return result;
        }
        case StreamFramer::Result::NeedMore:
          break;
      }
      if (!bytes.empty()) {
        taken_ += framer_.feed(bytes);
        continue;
      }
    }

    // All that has come in order is used, or too little.
    const std::size_t rest = framer_.buffered() + (waiting_.size() - taken_);
    if (hasHole() && (finishing_ || holdsTooMuch())) {
      framer_.reset();
      waiting_.clear();
      taken_ = 0;
      const std::uint64_t missing = passHole();
      state_ = State::Searching;
      const Result result = problem(frame, std::to_string(missing) + " bytes of the stream are missing");
      offset_ += rest + missing;
      return result;
    }
    if (!finishing_) return Result::Nothing;
    const Result result =
        rest == 0 ? Result::Nothing
                  : problem(frame, "the stream ends within a frame, after " + std::to_string(rest) + " bytes of it");
    drop();
    return result;
  }
}

// All connections

bool TcpStreams::Less::operator()(const Ends& a, const Ends& b) const {
  const auto key = [](const Ends& ends) {
    return std::tie(ends[0].address, ends[0].port, ends[1].address, ends[1].port, ends[0].isV6);
  };
  return key(a) < key(b);
}

std::string TcpStreams::nameOf(const Connection& connection) {
  return toText(connection.ends[0]) + " - " + toText(connection.ends[1]);
}

void TcpStreams::take(Segment segment, std::int64_t time) {
  time_ = time;
  Ends ends = {segment.from, segment.to};
  std::size_t side = 0;
  if (std::tie(segment.to.address, segment.to.port) < std::tie(segment.from.address, segment.from.port)) {
    std::swap(ends[0], ends[1]);
    side = 1;
  }
  const bool opens = segment.syn && !segment.ack;
  auto [place, isNew] = connections_.try_emplace(ends);
  if (!isNew && place->second != nullptr && opens) {
    const TcpDirection& direction = place->second->directions[side];
    // The ports are used again.
    if (direction.isStarted() && direction.begin() != segment.sequence + 1) finish(place);
  }
  if (place->second == nullptr) {
    if (!segment.syn && (!isNew || segment.payload.empty())) {  // comes late, or tells nothing
      if (isNew) connections_.erase(place);
      return;
    }
    place->second = std::make_unique<Connection>(ends, longestFrame_);
  }
  Connection& connection = *place->second;
  TcpDirection& direction = connection.directions[side];
  if (segment.syn) {
    // Who opens it is the client, until a command tells otherwise.
    if (!connection.client) connection.client = opens ? side : 1 - side;
    if (!direction.isStarted()) direction.start(segment.sequence + 1, true);
    ++segment.sequence;
  }
  const auto end = segment.sequence + static_cast<std::uint32_t>(segment.payload.size());
  if (!segment.payload.empty() && direction.take(segment.sequence, std::move(segment.payload))) {
    due_.push_back({&connection, side});
  }
  if (segment.fin) direction.endAt(end);
  const bool isOver = connection.directions[0].isComplete() && connection.directions[1].isComplete();
  if (segment.rst || isOver) finish(place);
}

void TcpStreams::finish(Connections::iterator place) {
  finish(std::move(place->second));
  over_.push_back(place->first);
  if (over_.size() <= kMostRemembered) return;
  const auto oldest = connections_.find(over_.front());
  over_.pop_front();
  if (oldest != connections_.end() && oldest != place && oldest->second == nullptr) connections_.erase(oldest);
}

void TcpStreams::finish(std::unique_ptr<Connection> connection) {
  for (std::size_t side = 0; side < 2; ++side) {
    connection->directions[side].finish();
    due_.push_back({connection.get(), side});
  }
  ending_.push_back(std::move(connection));
}

void TcpStreams::finish() {
  for (auto& [ends, connection] : connections_) {
    if (connection != nullptr) finish(std::move(connection));
  }
  connections_.clear();
  over_.clear();
}

bool TcpStreams::next(CapturedFrame& frame) {
  while (!due_.empty()) {
    const Due due = due_.front();
    if (tell(*due.connection, due.side, frame)) return true;
    due_.pop_front();
  }
  ending_.clear();
  return false;
}

bool TcpStreams::tell(Connection& connection, std::size_t side, CapturedFrame& frame) {
  TcpDirection& direction = connection.directions[side];
  const TcpDirection::Result result = direction.next(frame);
  if (const std::uint64_t skipped = direction.takeSkipped();
      skipped != 0 && result != TcpDirection::Result::NotCommands) {
    note_(nameOf(connection) + ": " + std::to_string(skipped) + " bytes from " + toText(connection.ends[side]) +
          " are passed over, in which no command begins");
  }
  if (result == TcpDirection::Result::NotCommands) {
    note_(nameOf(connection) + ": no commands, passed over");
    for (TcpDirection& each : connection.directions) each.drop();
  }
  if (result == TcpDirection::Result::NotCommands || result == TcpDirection::Result::Nothing) return false;

  if (result == TcpDirection::Result::Frame) learnClient(connection, side, frame.bytes);
  frame.number = ++frames_;
  frame.time = time_;
  if (connection.client) {
    frame.direction = side == *connection.client ? CommandDirection::ClientToServer : CommandDirection::ServerToClient;
    if (connection.clientText.empty()) connection.clientText = toText(connection.ends[*connection.client]);
    frame.connection = connection.clientText;
  }
  return true;
}

/// Each class is sent by one side.
void TcpStreams::learnClient(Connection& connection, std::size_t side, std::span<const std::uint8_t> frame) {
  if (connection.isClientSure) return;
  const auto classes = classesIn(frame);
  if (classes.empty()) return;
  connection.isClientSure = true;
  connection.client = classes.front().direction == CommandDirection::ClientToServer ? side : 1 - side;
  connection.clientText.clear();
}

}  // namespace poker::cmdproc

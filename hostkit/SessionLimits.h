#pragma once

#include <hostkit/StreamFramer.h>

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace poker {

/// How many frames a peer may send. A bucket holds `burst` of them and is filled at `framesPerSecond`. A command counts as
/// one frame, or as many as CommandCosts tells.
struct RateLimit {
  double framesPerSecond = 50;  ///< 0: as many as it likes
  std::uint32_t burst = 200;
  /// Whether a peer that sends more is cut off. Otherwise it is read no faster: the system's buffers fill, the peer has
  /// to wait, and nothing is lost.
  bool cut = false;
};

/// Everything that bounds a session. A duration of zero means no bound.
struct SessionLimits {
  using Duration = std::chrono::milliseconds;

  FrameLimits frames;
  Duration connect = std::chrono::seconds(5);      ///< client: until the transport stands
  Duration handShake = std::chrono::seconds(5);    ///< in the state Connected
  Duration logon = std::chrono::seconds(30);       ///< in the state ShakenHands
  Duration wholeFrame = std::chrono::seconds(10);  ///< from a frame's first byte to its last
  Duration keepAlive = std::chrono::seconds(20);   ///< how often clients send one
  std::uint32_t missedKeepAlives = 2;              ///< so many missed ones in a row end the session
  Duration lastWords =
      std::chrono::seconds(2);           ///< for a last command, and the peer's end of the stream, to go through
  std::uint32_t outputSoft = 64 * 1024;  ///< bytes queued; more than that for
  Duration outputSoftTime = std::chrono::seconds(10);  ///< so long end the session
  /// More than that end it at once. The longest frame of them does not count, so that any one frame can be sent, whatever
  /// else waits: a peer that does not read holds so much and one frame. Besides that frame there is room for another long
  /// one; a host that sends longer ones does so one after the other.
  std::uint32_t outputHard = 512 * 1024;
  /// Server: so many bytes, more or less, the system may hold of a connection in each direction, besides what is counted
  /// above; 0: as many as it likes, which on Linux are megabytes.
  std::uint32_t systemBuffer = 128 * 1024;
  RateLimit rate;
  /// Server: so many bytes for one client in one turn of the loop are worth compressing; 0: none are.
  std::uint32_t batchFrom = 512;

  /// After so long without a whole frame the peer counts as gone: half an interval after the last one it may miss.
  Duration idle() const { return keepAlive * missedKeepAlives + keepAlive / 2; }

  /// What a server holds its clients to: the values above.
  static SessionLimits forServer() { return {}; }
  /// What a client holds its server to: long lists and pictures come from there, and as fast as they like; users take
  /// their time to log on.
  static SessionLimits forClient() {
    SessionLimits limits;
    limits.frames = {64 * 1024, 1024 * 1024, 1024 * 1024};
    limits.logon = Duration::zero();
    limits.rate.framesPerSecond = 0;
    return limits;
  }
};

/// The bucket of a RateLimit. One thread at a time.
class TokenBucket {
 public:
  using Clock = std::chrono::steady_clock;

  TokenBucket(const RateLimit& limit, Clock::time_point now) : limit_(limit), tokens_(burst()), filled_(now) {}

  /// Whether there is a token, or no limit.
  bool available(Clock::time_point now) {
    if (limit_.framesPerSecond <= 0) return true;
    if (now > filled_) {
      const std::chrono::duration<double> passed = now - filled_;
      tokens_ = std::min(burst(), tokens_ + passed.count() * limit_.framesPerSecond);
      filled_ = now;
    }
    return tokens_ >= 1;
  }
  /// Takes a token if there is one.
  bool take(Clock::time_point now) {
    if (!available(now)) return false;
    if (limit_.framesPerSecond > 0) tokens_ -= 1;
    return true;
  }
  /// Takes tokens that may not be there yet: the next one comes so much later.
  void charge(std::uint32_t tokens) {
    if (limit_.framesPerSecond > 0) tokens_ -= tokens;
  }
  /// When the next token will be there, as of the last call.
  Clock::time_point next() const {
    constexpr double kLongest = 3600;  // a look too early does no harm, an overflow would
    const std::chrono::duration<double> wait(std::min((1 - std::min(tokens_, 1.0)) / limit_.framesPerSecond, kLongest));
    return filled_ + std::chrono::ceil<std::chrono::milliseconds>(wait);
  }

 private:
  double burst() const { return std::max<double>(limit_.burst, 1); }

  RateLimit limit_;
  double tokens_;
  Clock::time_point filled_;
};

}  // namespace poker

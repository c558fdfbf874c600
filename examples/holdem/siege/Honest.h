#pragma once

#include <examples/holdem/client/bots/Bot.h>
#include <examples/holdem/shared/Endpoint.h>

#include <asio/io_context.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace poker::holdem {

/// Those who are in the house and do nothing but keep their connection alive. They come a few at a time, and come back by
/// themselves. All calls come from the thread that runs the io_context.
class Crowd {
 public:
  /// @param size  so many, with accounts of their own that they open when they first come
  Crowd(asio::io_context& context, const Endpoint& server, std::size_t size);
  ~Crowd();

  void begin();
  std::size_t size() const { return guests_.size(); }
  /// How many are logged on now.
  std::size_t inside() const;
  /// How often a connection was lost that was inside.
  std::uint64_t lost() const { return lost_; }
  /// Those who went for good, and why the first one did.
  std::uint64_t gone() const { return gone_; }
  const std::string& whyGone() const { return whyGone_; }
  /// Names that the house has confirmed.
  std::vector<std::string> confirmed() const;

 private:
  class Guest;
  void beginNext();

  std::vector<std::unique_ptr<Guest>> guests_;
  std::size_t begun_ = 0;
  std::uint64_t lost_ = 0;
  std::uint64_t gone_ = 0;
  std::string whyGone_;
};

struct PlaySettings {
  Endpoint server;
  std::uint32_t firstGame = 1;
  std::size_t tables = 1;
  std::size_t seats = 6;
  std::chrono::milliseconds pause = std::chrono::milliseconds(30);  ///< that a player thinks
  std::uint64_t seed = 1;
  std::string names = "Player";
  bool comesAgain = false;  ///< one who goes for good is replaced: for players whom a fault may send away
};

/// Bots that play, and take the time from their action to what the server says to it. All calls come from the thread that
/// runs the io_context.
class Play {
 public:
  Play(asio::io_context& context, PlaySettings settings);
  ~Play();

  void begin();
  std::size_t size() const { return seats_.size(); }
  std::size_t seated() const;
  std::uint64_t lost() const { return lost_; }
  std::uint64_t gone() const { return gone_; }
  const std::string& whyGone() const { return whyGone_; }
  std::vector<std::string> names() const;
  /// Numbers of hands whose end a player has heard.
  const std::set<std::uint64_t>& confirmedHands() const { return hands_; }

  /// Microseconds from each action to its answer since the last call.
  std::vector<std::uint32_t> takeLatencies() { return std::exchange(latencies_, {}); }

 private:
  class Seat;

  asio::io_context& context_;
  PlaySettings settings_;
  std::vector<std::unique_ptr<Seat>> seats_;
  std::vector<std::uint32_t> latencies_;
  std::set<std::uint64_t> hands_;
  std::uint64_t lost_ = 0;
  std::uint64_t gone_ = 0;
  std::string whyGone_;
};

}  // namespace poker::holdem

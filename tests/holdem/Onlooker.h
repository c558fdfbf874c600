#pragma once

#include "Place.h"

#include <hostkit/Decode.h>

#include <span>
#include <stdexcept>
#include <vector>

namespace poker::holdem::test {

/// A client that looks at a table and keeps what the server says.
class Onlooker final : private PlayerEvents {
 public:
  PlayerClient client;
  bool ended = false;

  /// Logs on as the player of that number, with a new account if there is none, and waits for the table.
  Onlooker(Place& place, unsigned number) : client(place.context, settingsOf(place, number), *this), place_(place) {
    client.observeFrames([this](FrameDirection direction, std::span<const std::uint8_t> frame) {
      if (direction != FrameDirection::In) return;
      DecodeResult decoded = decodeCommand(frame.subspan(4), DecodePolicy::of(Side::Client));
      if (decoded) told_.push_back(std::move(decoded.command));
    });
    client.start();
    if (!place.runUntil([&] { return client.isAtTable() || ended; }) || ended) {
      throw std::runtime_error("cannot look at the table");
    }
  }

  /// All commands of the class T that came, in order.
  template <class T>
  std::vector<const T*> all(std::size_t from = 0) const {
    std::vector<const T*> found;
    for (; from < told_.size(); ++from) {
      if (const auto* command = dynamic_cast<const T*>(told_[from].get())) found.push_back(command);
    }
    return found;
  }
  /// Sends a Request and waits for the Answer.
  template <class Answer, class Request, class... Args>
  const Answer& ask(Args&&... args) {
    const std::size_t before = told_.size();
    client.send<Request>(std::forward<Args>(args)...);
    if (!place_.runUntil([&] { return !all<Answer>(before).empty(); })) throw std::runtime_error("no answer");
    return *all<Answer>(before).front();
  }

 private:
  static PlayerSettings settingsOf(const Place& place, unsigned number) {
    PlayerSettings settings = place.bot(number).player;
    settings.sitsDown = false;
    return settings;
  }
  void onEnd(PlayerEnd, std::string_view) override { ended = true; }

  Place& place_;
  std::vector<CommandHandle<>> told_;
};

}  // namespace poker::holdem::test

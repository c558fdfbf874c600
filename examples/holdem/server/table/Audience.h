#pragma once

#include <CommandProcessor/core/ConnectionsSet.h>
#include <examples/holdem/game/Stakes.h>
#include <examples/holdem/server/Outbox.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace poker::holdem {

/// The connections that look at a table, and which of them speak for its seats.
class Audience {
 public:
  explicit Audience(Outbox& outbox) : outbox_(outbox) {}

  void add(const ConnectionID& viewer) { viewers_.insert(viewer); }
  /// @return the seat that the viewer spoke for; none when it looked on
  SeatID remove(const ConnectionID& viewer) {
    viewers_.erase(viewer);
    const SeatID seat = seatOf(viewer);
    if (seat.isValid()) connections_[seat.value()] = ConnectionID();
    return seat;
  }
  bool contains(const ConnectionID& viewer) const { return viewers_.contains(viewer); }
  const ConnectionsSet& viewers() const { return viewers_; }
  /// How many viewers speak for no seat.
  std::size_t observers() const {
    const auto speaks = [](const ConnectionID& connection) { return connection.isValid(); };
    return viewers_.size() - static_cast<std::size_t>(std::count_if(connections_.begin(), connections_.end(), speaks));
  }

  /// From now on the viewer, and no other one, speaks for the seat; the invalid id: nobody.
  void bind(const SeatID& seat, const ConnectionID& viewer) { connections_[seat.value()] = viewer; }
  /// The invalid id when nobody speaks for the seat.
  const ConnectionID& connectionOf(const SeatID& seat) const { return connections_[seat.value()]; }
  SeatID seatOf(const ConnectionID& viewer) const {
    for (std::size_t i = 0; i < connections_.size(); ++i) {
      if (viewer.isValid() && connections_[i] == viewer) return static_cast<SeatID::value_type>(i);
    }
    return {};
  }

  // Each sends a T, filled with `init(args...)`.

  template <class T, class... Args>
  void tellAll(Args&&... args) {
    outbox_.add<T>(viewers_, std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  void tellSeat(const SeatID& seat, Args&&... args) {
    outbox_.add<T>(connectionOf(seat), std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  void tellAllBut(const SeatID& seat, Args&&... args) {
    others_ = viewers_;
    others_.erase(connectionOf(seat));
    outbox_.add<T>(others_, std::forward<Args>(args)...);
  }
  Outbox& outbox() { return outbox_; }

 private:
  Outbox& outbox_;
  ConnectionsSet viewers_;
  ConnectionsSet others_;
  std::array<ConnectionID, kMaxSeats> connections_;
};

}  // namespace poker::holdem

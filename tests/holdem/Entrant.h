#pragma once

#include "Guest.h"

#include <examples/holdem/server/tournament/BlindLevels.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace poker::holdem::test {

using Registration = SrvTourRegisterResult::Reason;
using Withdrawal = SrvTourUnregisterResult::Reason;
using Request = ClGetExtraMoney::RequestType;

inline RealMoneyType units(std::int64_t amount) { return RealMoneyType::fromUnits(amount); }

/// Starts with so many players and waits for nothing.
inline TourSettings quickTour(std::size_t players) {
  TourSettings tour;
  tour.name = "Quick";
  tour.maxPlayers = tour.startWith = players;
  tour.buyIn = units(50);
  tour.fee = units(5);
  tour.chips = units(1500);
  tour.levels = usualLevels({units(10), units(20)});
  tour.switchType = TOUR_NAMES::SwitchType::ByHands;
  tour.levelLength = 1000;
  tour.seatingTime = tour.handPause = std::chrono::milliseconds(0);
  tour.seed = 1;
  return tour;
}

inline ServerSettings houseWith(std::vector<TourSettings> tournaments) {
  ServerSettings settings = quietTables({9});
  settings.house.gift = units(1000);
  settings.house.tournaments = std::move(tournaments);
  return settings;
}

inline Tournament& tourOf(Place& place, std::size_t index = 0) {
  return *place.server.house().tournaments().all()[index];
}

/// A guest who plays tournaments.
struct Entrant {
  Guest guest;
  Place& place;

  Entrant(Place& where, std::string name) : guest(where, std::move(name)), place(where) {
    if (!guest.comesIn()) throw std::runtime_error("cannot come in");
  }
  std::uint32_t tour(std::size_t index = 0) const { return tourOf(place, index).id(); }
  Registration enters(std::size_t index = 0, const std::string& password = "",
                      const TourMoneyChooser& choice = TourMoneyChooser::empty()) {
    return guest.ask<SrvTourRegisterResult, ClTourRegister>(tour(index), choice, password).reason();
  }
  Withdrawal withdraws(std::size_t index = 0) {
    return guest.ask<SrvTourUnregisterResult, ClTourUnregister>(tour(index)).reason();
  }
  const SrvGetExtraMoneyReply& asks(Request type) {
    return guest.ask<SrvGetExtraMoneyReply, ClGetExtraMoney>(type, true, 1u, tour(), TourMoneyChooser::empty());
  }
  RealMoneyType balance() const {
    for (const Standing& standing : place.bank().standings()) {
      if (standing.name == guest.name()) return standing.balance;
    }
    return {};
  }
  /// Answers its next turn.
  void plays(UserAction action) {
    ASSERT_TRUE(guest.waitFor([&] { return isAsked(); }));
    guest.forget();
    guest.send<ClTurnReceived>();
    guest.send<ClUserAction>(action);
  }
  bool isAsked() const {
    const auto* turn = guest.heard<SrvUserTurn>();
    return turn != nullptr && turn->isNotify();
  }
};

}  // namespace poker::holdem::test

#pragma once

#include <examples/holdem/server/tournament/TourList.h>
#include <examples/holdem/server/tournament/Tournaments.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace poker::holdem {

/// Answers what clients ask about tournaments, and tells those of a table's chips who subscribed for it. What is about a
/// tournament that does not exist is passed over, unless there is an answer for it. The rules of calls are Tournament's.
class TourDesk {
 public:
  /// All references must outlive this object.
  TourDesk(asio::io_context& context, Tournaments& tournaments, Outbox& outbox);

  void tellList(const ConnectionID& client, TOUR_NAMES::TourType type, std::uint32_t version);
  void tellDetails(const ConnectionID& client, AccountID account, std::uint32_t tourID, std::uint32_t version);
  void tellMoney(const ConnectionID& client, std::uint32_t tourID);
  void tellTable(const ConnectionID& client, AccountID account, std::uint32_t tourID, std::uint32_t tableID);
  /// The whole picture; not before the client has confirmed the last one.
  void tellPicture(const ConnectionID& client, AccountID account, std::uint32_t tourID);
  /// The client has the last picture.
  void confirmPicture(const ConnectionID& client, AccountID account);
  void tellChanges(const ConnectionID& client, AccountID account, std::uint32_t tourID,
                   const TourBoard::Versions& known);

  void subscribe(const ConnectionID& client, AccountID account, std::uint32_t tourID, std::uint32_t tableID);
  void unsubscribe(const ConnectionID& client, std::uint32_t tourID);

  void enter(const ConnectionID& client, const Account& account, const ClTourRegister& request);
  void withdraw(const ConnectionID& client, AccountID account, std::uint32_t tourID);

  /// Whether the account may look at more than the tournament's line in the list. The client is told if not.
  bool mayLook(const ConnectionID& client, AccountID account, const Tournament& tournament);

  /// The connection is gone.
  void forget(const ConnectionID& client);

 private:
  struct Subscription {
    std::uint32_t tableID;
    std::uint64_t told;  // TourTable::chipChanges()
  };

  Tournament* findFor(const ConnectionID& client, AccountID account, std::uint32_t tourID);
  void tellNumbers(const ConnectionID& client, AccountID account, Tournament& tournament);
  void tellChips(const ConnectionID& client, std::uint32_t tourID, Subscription& subscription);
  void tick();
  void armTimer();

  Tournaments& tournaments_;
  Outbox& outbox_;
  TourList singleTable_{TOUR_NAMES::TourType::SingleTable};
  TourList multiTable_{TOUR_NAMES::TourType::MultiTable};
  /// Clients that have not confirmed a picture, and the tournament whose picture they asked for meanwhile.
  std::map<std::int32_t, std::optional<std::uint32_t>> unconfirmed_;
  std::map<std::pair<std::int32_t, std::uint32_t>, Subscription> subscriptions_;  // by client and tournament
  asio::steady_timer timer_;
  bool isTickSet_ = false;
  // Filled anew for each use.
  TourListEntry line_;
  TournamentsInfo list_;
};

}  // namespace poker::holdem

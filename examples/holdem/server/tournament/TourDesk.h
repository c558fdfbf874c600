#pragma once

#include <examples/holdem/server/tournament/TourList.h>
#include <examples/holdem/server/tournament/Tournaments.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace poker::holdem {

/// Answers what clients ask about tournaments, and tells those of a table's chips who subscribed for it. What is about a
/// tournament that does not exist is passed over, unless there is an answer for it. The rules of calls are Tournament's.
class TourDesk {
 public:
  /// After so many wrong passwords in a row for a tournament, a connection's further ones for it are not looked at.
  static constexpr unsigned kPasswordTries = 3;
  /// A client is told of so many tables, players and prizes that have changed; when there are more, the whole picture.
  static constexpr std::size_t kMostChanges = 500;

  /// All references must outlive this object.
  /// @param reserveNumbers  where versions of the lists come from
  TourDesk(asio::io_context& context, Tournaments& tournaments, Outbox& outbox, VersionNumbers::Reserve reserveNumbers);

  void tellList(const ConnectionID& client, TOUR_NAMES::TourType type, std::uint32_t version);
  /// At most once a second, the last question then.
  void tellDetails(const ConnectionID& client, AccountID account, std::uint32_t tourID, std::uint32_t version);
  void tellMoney(const ConnectionID& client, std::uint32_t tourID);
  void tellTable(const ConnectionID& client, AccountID account, std::uint32_t tourID, std::uint32_t tableID);
  /// The whole picture; not before the client has confirmed the last one, and at most once a second.
  void tellPicture(const ConnectionID& client, AccountID account, std::uint32_t tourID);
  /// The client has the last picture.
  void confirmPicture(const ConnectionID& client);
  /// The whole picture, as above, to a client that has had none of the tournament on this connection, or another one than
  /// the server has told, or for which too much has changed.
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
  struct Question {
    AccountID account;
    std::uint32_t tourID;
    std::uint32_t version;  // of the details that the client has
  };
  /// Long answers of one kind to one connection.
  struct LongAnswers {
    Clock::time_point next{};  // not before
    std::optional<Question> waiting;
  };
  /// What a connection has asked for, as far as that matters for the next answer.
  struct Looker {
    explicit Looker(asio::io_context& context) : timer(context) {}

    LongAnswers details;
    LongAnswers pictures;
    std::optional<std::uint32_t> unconfirmed;      // the tournament whose picture is on its way
    std::set<std::uint32_t> pictured;              // tournaments whose picture it was told
    std::map<std::uint32_t, unsigned> wrongTries;  // passwords in a row, by tournament
    asio::steady_timer timer;                      // for what waits
  };
  struct Subscription {
    std::uint32_t tableID;
    std::uint64_t told;  // TourTable::chipChanges()
  };

  Tournament* findFor(const ConnectionID& client, AccountID account, std::uint32_t tourID);
  Looker& lookerOf(const ConnectionID& client);
  void armTimer(const ConnectionID& client, Looker& looker);
  void answerWaiting(const ConnectionID& client);
  void tellNumbers(const ConnectionID& client, AccountID account, Tournament& tournament);
  void tellChips(const ConnectionsSet& to, std::uint32_t tourID, std::uint32_t tableID, TourTable* table);
  void tick();
  void armTick();

  asio::io_context& context_;
  Tournaments& tournaments_;
  Outbox& outbox_;
  VersionNumbers numbers_;
  TourList singleTable_{TOUR_NAMES::TourType::SingleTable, numbers_};
  TourList multiTable_{TOUR_NAMES::TourType::MultiTable, numbers_};
  std::map<std::int32_t, Looker> lookers_;
  std::map<std::pair<std::int32_t, std::uint32_t>, Subscription> subscriptions_;  // by client and tournament
  asio::steady_timer tick_;
  bool isTickSet_ = false;
  // Filled anew for each use.
  TourListEntry line_;
  TournamentsInfo list_;
};

}  // namespace poker::holdem

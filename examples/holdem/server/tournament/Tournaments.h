#pragma once

#include <examples/holdem/server/members/Members.h>
#include <examples/holdem/server/tournament/Tournament.h>

#include <asio/io_context.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace poker::holdem {

/// All tournaments of the house. The rules of calls are Tournament's.
class Tournaments {
 public:
  /// @param mostAtOnce  tournaments that a player may be in at once
  /// All references must outlive this object.
  Tournaments(asio::io_context& context, const std::vector<TourSettings>& tournaments, unsigned mostAtOnce, Bank& bank,
              Members& members, Outbox& outbox, TourHost& host);

  const std::vector<std::unique_ptr<Tournament>>& all() const { return all_; }
  /// Null when there is none of that number.
  Tournament* find(std::uint32_t id);
  /// The tournament of a table; null when no tournament has a table of that number.
  Tournament* findByTable(std::uint32_t tableID);

  SrvTourRegisterResult::Reason enter(Tournament& tournament, const Account& account, const std::string& password,
                                      const TourMoneyChooser& choice);
  /// Tells a player who has just logged on how its tournaments stand.
  void welcome(const ConnectionID& client, AccountID account);

  /// The host stops all that have started, or lets those go on that it has stopped.
  void suspend();
  void resume();
  /// Calls off what is not over, as soon as its hands are.
  void close();
  bool areOver() const;

  /// To be called at the end of every event.
  void settle();

 private:
  TourBank bank_;
  Members& members_;
  unsigned mostAtOnce_;
  std::vector<std::unique_ptr<Tournament>> all_;
};

}  // namespace poker::holdem

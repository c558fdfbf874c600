#include <examples/holdem/server/table/HandRecord.h>

#include <examples/holdem/game/CardText.h>

#include <nlohmann/json.hpp>

namespace poker::holdem {

void HandRecord::begin(std::uint64_t number) {
  number_ = number;
  began_ = std::chrono::system_clock::now();
  actions_.clear();
}

std::string HandRecord::toJson(const TableSettings& table, const Hand& hand, Seats& seats) const {
  using Json = nlohmann::ordered_json;
  Json players = Json::array();
  for (const HandPlayer& player : hand.players()) {
    const Seat& seat = *seats.find(player.seat);
    players.push_back({{"seat", player.seat.value()},
                       {"name", seat.name},
                       {"stack", seat.stack.hundredths()},
                       {"cards", toText(player.cards)},
                       {"shown", player.turnedUp},
                       {"won", player.won.hundredths()}});
  }
  Json actions = Json::array();
  for (const Action& action : actions_) {
    actions.push_back({{"street", static_cast<unsigned>(action.street)},
                       {"seat", action.seat.value()},
                       {"action", actionBit(action.action)},
                       {"amount", action.amount.hundredths()}});
  }
  Json pots = Json::array();
  for (const Pots::Share& pot : hand.pots()) pots.push_back(pot.amount.hundredths());
  const Json record = {{"hand", number_},
                       {"game", table.gameID},
                       {"table", table.name},
                       {"limit", table.stakes.limit == LimitType::FixedLimit ? "fixed-limit" : "no-limit"},
                       {"smallBlind", table.stakes.smallBlind.hundredths()},
                       {"bigBlind", table.stakes.bigBlind.hundredths()},
                       {"began", std::chrono::duration_cast<std::chrono::seconds>(began_.time_since_epoch()).count()},
                       {"button", hand.plan().button.value()},
                       {"board", toText(hand.board())},
                       {"rake", hand.pots().rake().hundredths()},
                       {"pots", std::move(pots)},
                       {"players", std::move(players)},
                       {"actions", std::move(actions)}};
  return record.dump();
}

}  // namespace poker::holdem

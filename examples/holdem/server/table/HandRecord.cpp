#include <examples/holdem/server/table/HandRecord.h>

#include <examples/holdem/game/CardText.h>

#include <nlohmann/json.hpp>

namespace poker::holdem {

void HandRecord::begin(std::uint64_t number) {
  number_ = number;
  began_ = ended_ = std::chrono::system_clock::now();
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
    if (action.action == UserAction::Post) actions.back()["dead"] = action.dead.hundredths();
  }
  Json pots = Json::array();
  for (const Pots::Share& pot : hand.pots()) pots.push_back(pot.amount.hundredths());
  Json finalists = Json::array();
  for (const std::uint8_t index : hand.finalists()) finalists.push_back(hand.players()[index].seat.value());
  Json wins = Json::array();
  for (const Hand::Win& win : hand.wins()) {
    wins.push_back(
        {{"pot", win.pot}, {"seat", hand.players()[win.player].seat.value()}, {"amount", win.amount.hundredths()}});
  }
  Json record = {{"hand", number_},
                 {"game", table.gameID},
                 {"table", table.name},
                 {"seats", table.seats},
                 {"limit", table.stakes.limit == LimitType::FixedLimit ? "fixed-limit" : "no-limit"},
                 {"smallBlind", table.stakes.smallBlind.hundredths()},
                 {"bigBlind", table.stakes.bigBlind.hundredths()},
                 {"began", began().time_since_epoch().count()},
                 {"ended", ended().time_since_epoch().count()},
                 {"button", hand.plan().button.value()},
                 {"board", toText(hand.board())},
                 {"rake", hand.pots().rake().hundredths()},
                 {"pots", std::move(pots)},
                 {"players", std::move(players)},
                 {"actions", std::move(actions)},
                 {"finalists", std::move(finalists)},
                 {"wins", std::move(wins)}};
  if (table.tournamentID != 0) record["tournament"] = table.tournamentID;
  return record.dump();
}

}  // namespace poker::holdem

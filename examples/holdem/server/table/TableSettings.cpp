#include <examples/holdem/server/table/TableSettings.h>

namespace poker::holdem {

void describe(const TableSettings& settings, BaseTableState& state) {
  const Stakes& stakes = settings.stakes;
  state.gameID = settings.gameID;
  state.tableName = settings.name;
  state.gameType = GameType::TexasHoldem;
  state.limitType = stakes.limit;
  state.realMoney = false;
  state.smallBlind = stakes.smallBlind;
  state.bigBlind = stakes.bigBlind;
  state.ante = kZeroMoney;
  state.lowBet = stakes.betOf(Street::PreFlop);
  state.highBet = stakes.limit == LimitType::FixedLimit ? stakes.betOf(Street::River) : kZeroMoney;
  state.minBuyIn = settings.minBuyIn;
  state.maxBuyIn = settings.maxBuyIn;
  state.maxSeats = static_cast<std::uint8_t>(settings.seats);
  state.replyTime = static_cast<std::uint16_t>(std::chrono::ceil<std::chrono::seconds>(settings.replyTime).count());
}

}  // namespace poker::holdem

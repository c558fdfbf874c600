#include <examples/holdem/server/lobby/TableDescriptions.h>

#include <examples/holdem/shared/Protocol.h>

#include <algorithm>
#include <limits>
#include <tuple>

namespace poker::holdem {

namespace {

/// The nearest that the field can tell.
template <class Field, class Number>
Field fitted(Number number) {
  return static_cast<Field>(std::min<std::uint64_t>(static_cast<std::uint64_t>(number),  //
                                                    std::numeric_limits<Field>::max()));
}

auto tied(const TablePlayerInfo& player) {
  return std::tie(player.seatID, player.displayName, player.money, player.state);
}

auto varying(const TableInfoDetailed& details) {
  return std::tie(details.handNumber, details.averagePot, details.playersPerFlop, details.handsPerHour,
                  details.observers, details.waitList);
}

}  // namespace

void describe(RingTable& table, const WaitLists& waiting, ServerTableEntry& line) {
  const TableSettings& settings = table.settings();
  const Stakes& stakes = settings.stakes;
  const bool isFixed = stakes.limit == LimitType::FixedLimit;
  BaseTableState base;
  describe(settings, base);
  line.gameID = base.gameID;
  line.tableName = base.tableName;
  line.gameType = base.gameType;
  line.listType = kRingGames;
  line.replyTime = base.replyTime;
  line.limitType = base.limitType;
  line.maxSeats = base.maxSeats;
  line.lowBet = isFixed ? base.lowBet : base.smallBlind;
  line.highBet = isFixed ? base.highBet : base.bigBlind;
  line.minBuyIn = base.minBuyIn;
  line.maxBuyIn = base.maxBuyIn;
  line.flags = static_cast<std::uint8_t>((settings.password.empty() ? 0 : ServerTableEntry::PasswordProtected) |
                                         (table.isClosed() ? ServerTableEntry::Closing : 0));
  line.tournamentID = settings.tournamentID;
  line.skin.clear();
  line.handNumber = table.handNumber();
  line.players = fitted<std::uint16_t>(table.players());
  line.waitListLength = fitted<std::uint16_t>(waiting.length(settings.gameID));
  line.observers = fitted<std::uint32_t>(table.observers());
  line.averagePot = fitted<std::uint32_t>(table.statistics().averagePot().hundredths());
  line.playersPerFlop = fitted<std::uint8_t>(table.statistics().playersPerFlop());
  line.handsPerHour = table.statistics().handsPerHour();
}

void describe(RingTable& table, const WaitLists& waiting, TableInfoDetailed& details) {
  const TableSettings& settings = table.settings();
  describe(settings, details);
  details.tournamentID = settings.tournamentID;
  details.passwordProtected = !settings.password.empty();
  details.handNumber = table.handNumber();
  details.averagePot = table.statistics().averagePot();
  details.playersPerFlop = fitted<std::uint8_t>(table.statistics().playersPerFlop());
  details.handsPerHour = table.statistics().handsPerHour();
  details.observers = fitted<std::uint32_t>(table.observers());
  details.players.clear();
  table.forEachSeat([&](const SeatID& seat, const std::string& name, const RealMoneyType& stack,
                        const RealMoneyType& bet, UserState state) {
    TablePlayerInfo& player = details.players.emplace_back();
    player.seatID = seat;
    player.displayName = name;
    player.money = details.passwordProtected ? kZeroMoney : stack + bet;
    player.state = state;
  });
  details.waitList.clear();
  waiting.forEachWaiting(settings.gameID, [&](const std::string& name) { details.waitList.push_back(name); });
}

bool saySame(const TableInfoDetailed& a, const TableInfoDetailed& b) {
  return varying(a) == varying(b) &&
         std::equal(a.players.begin(), a.players.end(), b.players.begin(), b.players.end(),
                    [](const TablePlayerInfo& x, const TablePlayerInfo& y) { return tied(x) == tied(y); });
}

}  // namespace poker::holdem

#pragma once

#include <CommandProcessor/types/DbRecord.h>
#include <CommandProcessor/types/GameType.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <cstdint>
#include <string>
#include <vector>

namespace poker {

/// One table as a line of the lobby's list. What the numbers mean beyond this is between server and client; all of them
/// are carried as they are.
///
///     hand (64 bits); game, list (16 bits); limit (byte); name (string); game id (32 bits); players, reply time (16
///     bits); seats (byte); low bet, high bet, least and largest buy-in (money); wait list (16 bits); players a flop
///     (byte); average pot (32 bits); flags (byte); tournament (32 bits); skin: size (32 bits, signed) and that many
///     bytes, none when it is below 1; hands an hour, observers, version (32 bits)
struct COMMANDPROCESSOR_API ServerTableEntry : DbRecord<ServerTableEntry> {
  /// Bits of `flags`; others are carried as they are.
  enum Flag : std::uint8_t {
    RealMoney = 0x01,
    PasswordProtected = 0x02,
    Closing = 0x04,  ///< takes no new players
  };

  // What the table is.
  std::uint32_t gameID = 0;
  std::string tableName;
  GameType gameType = GameType::None;
  std::uint16_t listType = 0;   ///< the list that the table stands in: what ClGetServerInfo asks for
  std::uint16_t replyTime = 0;  ///< seconds that a player has for a turn
  LimitType limitType = LimitType::None;
  std::uint8_t maxSeats = 0;
  RealMoneyType lowBet;   ///< fixed limit: the bet of the early rounds; otherwise the small blind
  RealMoneyType highBet;  ///< fixed limit: the bet of the late rounds; otherwise the big blind
  RealMoneyType minBuyIn;
  RealMoneyType maxBuyIn;
  std::uint8_t flags = 0;
  std::uint32_t tournamentID = 0;  ///< 0 for a table of no tournament
  std::vector<std::uint8_t> skin;  ///< what the client draws this table with; empty for its usual look

  // What happens there.
  std::uint64_t handNumber = 0;  ///< 0 between hands
  std::uint16_t players = 0;     ///< seats that are taken
  std::uint16_t waitListLength = 0;
  std::uint32_t observers = 0;
  std::uint32_t averagePot = 0;     ///< hundredths
  std::uint8_t playersPerFlop = 0;  ///< percent of those who were dealt in
  std::uint32_t handsPerHour = 0;
  std::uint32_t version = 0;  ///< of the list, when this entry last changed

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("handNumber", self.handNumber);
    field("gameType", self.gameType);
    field("listType", self.listType);
    field("limitType", self.limitType);
    field("tableName", self.tableName);
    field("gameID", self.gameID);
    field("players", self.players);
    field("replyTime", self.replyTime);
    field("maxSeats", self.maxSeats);
    field("lowBet", self.lowBet);
    field("highBet", self.highBet);
    field("minBuyIn", self.minBuyIn);
    field("maxBuyIn", self.maxBuyIn);
    field("waitListLength", self.waitListLength);
    field("playersPerFlop", self.playersPerFlop);
    field("averagePot", self.averagePot);
    field("flags", self.flags);
    field("tournamentID", self.tournamentID);
    field("skin", wire::bytes<wire::BelowOneIsNone>(self.skin));
    field("handsPerHour", self.handsPerHour);
    field("observers", self.observers);
    field("version", self.version);
  }
};

}  // namespace poker

#pragma once

#include <CommandProcessor/types/CardVector.h>
#include <CommandProcessor/types/GameType.h>
#include <CommandProcessor/types/Pot.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/SteadyVector.h>
#include <CommandProcessor/types/TypeWrapper.h>
#include <CommandProcessor/types/UserAction.h>
#include <CommandProcessor/types/UserState.h>

#include <string>

namespace poker {

/// What a table is, whoever looks at it and whatever happens there.
struct COMMANDPROCESSOR_API BaseTableState : Record<BaseTableState> {
  std::uint32_t gameID = 0;
  std::string tableName;
  GameType gameType = GameType::None;
  LimitType limitType = LimitType::None;
  bool realMoney = false;
  RealMoneyType smallBlind;
  RealMoneyType bigBlind;
  RealMoneyType ante;
  RealMoneyType lowBet;   ///< fixed limit: the bet of the early rounds; otherwise the least bet
  RealMoneyType highBet;  ///< fixed limit: the bet of the late rounds; otherwise zero
  RealMoneyType minBuyIn;
  RealMoneyType maxBuyIn;
  std::uint8_t maxSeats = 0;    ///< seats are numbered from 0 to maxSeats - 1
  std::uint16_t replyTime = 0;  ///< seconds that a player has for a turn

 protected:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("gameID", self.gameID);
    field("tableName", self.tableName);
    field("gameType", self.gameType);
    field("limitType", self.limitType);
    field("realMoney", self.realMoney);
    field("smallBlind", self.smallBlind);
    field("bigBlind", self.bigBlind);
    field("ante", self.ante);
    field("lowBet", self.lowBet);
    field("highBet", self.highBet);
    field("minBuyIn", self.minBuyIn);
    field("maxBuyIn", self.maxBuyIn);
    field("maxSeats", self.maxSeats);
    field("replyTime", self.replyTime);
  }
};

/// A seat that is taken or reserved.
struct COMMANDPROCESSOR_API ClientSeatState : Record<ClientSeatState> {
  SeatID seatID;
  std::string displayName;
  RealMoneyType money;  ///< the stack, without the bet
  RealMoneyType bet;    ///< what lies before the player in this betting round
  UserState state = UserState::Empty;
  UserAction lastAction = UserAction::NoAction;  ///< in this betting round
  CardVector cards;                              ///< as this viewer may see them

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("seatID", self.seatID);
    field("displayName", self.displayName);
    field("money", self.money);
    field("bet", self.bet);
    field("state", self.state);
    field("lastAction", self.lastAction);
    field("cards", self.cards);
  }
};

/// Everything that a client which has just arrived needs to draw a table, as one viewer may see it: the sender hides
/// every card that the viewer may not see.
///
///     the fields of BaseTableState; own seat (byte); hand (64 bits); count of seats (byte) and the seats; dealer, kill
///     button (bytes); Pot; board (CardVector); seat whose turn it is (byte), seconds left (16 bits)
struct COMMANDPROCESSOR_API ClientTableState : BaseTableState, Record<ClientTableState> {
  SeatID ownSeat;                       ///< the viewer's own; none for somebody who looks on
  std::uint64_t handNumber = 0;         ///< 0 between hands
  SteadyVector<ClientSeatState> seats;  ///< those that are taken or reserved, ascending
  SeatID dealerSeat;                    ///< none before the first hand
  SeatID killSeat;                      ///< none when nobody has the kill button
  Pot pot;                              ///< of the finished betting rounds
  CardVector board;
  SeatID turnSeat;                 ///< none when nobody is asked to act
  std::uint16_t turnTimeLeft = 0;  ///< seconds

  using Record<ClientTableState>::serialize;
  using Record<ClientTableState>::deserialize;
  using Record<ClientTableState>::visitFields;
  using Record<ClientTableState>::assignFields;
  using Record<ClientTableState>::fitsOnWire;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    BaseTableState::fields(self, field);
    field("ownSeat", self.ownSeat);
    field("handNumber", self.handNumber);
    field("seats", wire::list<std::uint8_t>(self.seats));
    field("dealerSeat", self.dealerSeat);
    field("killSeat", self.killSeat);
    field("pot", self.pot);
    field("board", self.board);
    field("turnSeat", self.turnSeat);
    field("turnTimeLeft", self.turnTimeLeft);
  }
};

}  // namespace poker

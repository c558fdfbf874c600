#include <CommandProcessor/commands/SrvCommandGame.h>
#include <CommandProcessor/commands/table/TableCommands.h>
#include <CommandProcessor/types/FieldJson.h>
#include <hostkit/CommandHandle.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace poker::test {
namespace {

RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }

template <class T>
CommandHandle<T> readBack(const PokerCommandI& command) {
  auto read = CommandHandle<T>::create();
  EXPECT_EQ(decode(*read, bodyOf(command)), "");
  return read;
}

const Card kOwnAce(Card::Suit::Spade, Card::Rank::Ace, Card::Visibility::HiddenOwner);
NextTurnOptions someTurns() {
  NextTurnOptions turns;
  turns.addFoldOption();
  turns.addOption(UserAction::Call, cents(200));
  turns.addOption(UserAction::Raise, cents(400), cents(9000));
  return turns;
}

// ---- seats and chips

TEST(ClConnectGame, CopiesTextsAndBytesAndTakesNullForNothing) {
  const auto command = make<ClConnectGame>(1u, "pw", "10.0.0.2", "a\0b", 3);
  EXPECT_EQ(std::string(command->frIDStr(), 3), std::string("a\0b", 3));
  EXPECT_EQ(command->frIDStrSize(), 3);
  for (const int size : {5, 0, -1}) {
    command->init(2, nullptr, nullptr, size == 5 ? nullptr : "abc", size);
    EXPECT_EQ(toHex(bodyOf(*command)), "02 00 00 00 00 00 00 00 00 00") << size;
  }
}

TEST(SrvSitError, SaysNothingOfMoneyThatIsZero) {
  EXPECT_EQ(encode(*make<SrvSitError>(SrvErrorCode::InternalError, cents(0))).size(), 7u);
  const auto command = make<SrvSitError>(SrvErrorCode::ExactMoneyRequired, cents(5));
  ASSERT_EQ(decode(*command, hex("0A 00 00 00 01")), "");
  EXPECT_EQ(command->getMoney(), cents(0));
  EXPECT_EQ(command->errorCode(), SrvErrorCode::LessThanLastSitting);
}

const std::map<std::uint32_t, std::string> kSeatTexts = {
    {0, "Seat already taken"},
    {1, R"(You do not have enough money to participate in
game on this table! Please, visit the Cashier.)"},
    {2, "Your account is not setup for real money table!"},
    {3, "You are not allowed to sit!"},
    {4, R"(You have reached your participation limit (taking part
in several tournaments at the same time.)
You can not sit!)"},
    {5, "You have reached your won tournaments limit. You can not sit!"},
    {6,
     "Sorry you have insufficient available balance to play this tournament - please click on Cashier to see your "
     "available balance"},
    {8, R"(Sorry, your rebuy is not allowed. The amount
requested exceeds the maximum allowed for the table.)"},
    {9, "Sorry, you can't participate in this tournament."},
    {10,
     "You must bring to the table at least the amount you had at\n"
     "your last sitting. If you do not wish to bring that amount \n"
     "you must wait until at least 30 minutes have past since your last sitting.\n"
     "If you have any questions please contact the HOST."},
    {13, "No reserved seat was found. Please try again."},
    {14, R"(You are not allowed to sit on this table!
For more information please contact @>SUPPORT<@.)"},
    {15,
     "You must bring to the table the exact amount you had at\n"
     "your last sitting (12.50). If you do not wish to bring that amount \n"
     "you must wait until at least 30 minutes have past since your last sitting.\n"
     "If you have any questions please contact the HOST."},
};

std::string replaced(std::string_view text, std::string_view part, std::string_view by) {
  const auto place = text.find(part);
  std::string result(text.substr(0, place));
  if (place != std::string_view::npos) result.append(by).append(text.substr(place + part.size()));
  return result;
}

TEST(SeatErrors, KeepEveryTextByteForByte) {
  std::vector<std::uint32_t> codes;
  for (std::uint32_t code = 0; code < 300; ++code) codes.push_back(code);
  codes.insert(codes.end(), {0x80000000u, 0xFFFFFFFFu});
  for (const std::uint32_t code : codes) {
    const auto known = kSeatTexts.find(code);
    const std::string text = known != kSeatTexts.end() ? known->second : "Internal server error";
    const auto error = make<SrvSitError>(SrvErrorCode{code}, cents(1250));
    for (const int duration : {1800, 0, -5, INT32_MIN}) EXPECT_EQ(error->getErrorMsg(duration), text) << code;
    EXPECT_EQ(error->getErrorMsg(1), replaced(text, "30 minutes", "1 second"));
    EXPECT_EQ(error->getErrorMsg(3900), replaced(text, "30 minutes", "1 hour and 5 minutes"));
    // Out of money: always the usual duration, and never the amount.
    EXPECT_EQ(make<OutOfMoney>(cents(1250), SrvErrorCode{code})->err(), replaced(text, "12.50", "0"));
  }
}

TEST(Narrowing, KeepsLowBytesAndNoMore) {
  EXPECT_EQ(readBack<SrvPlayerLeave>(*make<SrvPlayerLeave>(1u, 300u))->playersLeft(), 44u);
  EXPECT_EQ(readBack<SrvUpdateHintText>(*make<SrvUpdateHintText>(257u, "x"))->id(), 1u);
  const auto turn = make<SrvUserTurn>(SeatID(1), true, NextTurnOptions(), 300u);
  EXPECT_EQ(turn->turnReplyTimeout(), 44);
  EXPECT_EQ(readBack<SrvUserTurn>(*turn)->turnReplyTimeout(), 44);
}

// ---- the flow of a hand

class OpenedDeal : public SrvCardDealBase {
 public:
  OpenedDeal() : SrvCardDealBase(CommandType::SrvCardDeal) {}
  using SrvCardDealBase::serializeCards;
};

TEST(SrvHoldemPlayerPos, MakesAPositionOfEveryAction) {
  const std::map<std::uint32_t, int> positions{{16384, 2}, {8192, 3}, {512, 4}, {1048576, 5}};
  const auto command = make<SrvHoldemPlayerPos>();
  for (unsigned bit = 0; bit <= 32; ++bit) {
    const std::uint32_t code = bit == 32 ? 0 : 1u << bit;
    command->init(UserAction{code});
    const auto place = positions.find(code);
    EXPECT_EQ(command->pos(), place != positions.end() ? place->second : 1) << code;
  }
  const char* const texts[] = {"None", "Normal", "Small Blind", "Big Blind", "Post", "Straddle", "", ""};
  for (std::uint8_t pos = 0; pos < 8; ++pos) {
    EXPECT_STREQ(SrvHoldemPlayerPos::playerPos2String(SrvHoldemPlayerPos::PlayerPos{pos}), texts[pos]);
  }
  EXPECT_STREQ(SrvHoldemPlayerPos::playerPos2String(SrvHoldemPlayerPos::PlayerPos{255}), "");
}

TEST(SrvUserTurn, ReadsItsOptionsAloneThoughOptionsAddByThemselves) {
  const auto command = make<SrvUserTurn>(SeatID(3), true, someTurns(), 30u);
  EXPECT_EQ(command->getActionCodes(), 16u + 32u + 64u);
  ASSERT_EQ(decode(*command, hex("02 00 00 01 04 00 00 00 00 00 00 00 00 00 00 00 09")), "");
  EXPECT_EQ(command->getActionCodes(), 4u);
}

TEST(ClUserAction, AnActionWithoutAmountHasNone) {
  const auto command = make<ClUserAction>(UserAction::Raise, cents(5));
  EXPECT_TRUE(command->validAmount());
  command->init(UserAction::Call);
  EXPECT_FALSE(command->validAmount());
  EXPECT_EQ(command->amount(), cents(0));
  command->init(UserAction::Bet, cents(0));  // an amount of zero is an amount
  EXPECT_EQ(toHex(bodyOf(*command)), "08 00 00 00 01 00 00 00 00 00 00 00 00");
  ASSERT_EQ(decode(*command, hex("40 00 00 00 00")), "");
  EXPECT_FALSE(command->validAmount());
}

TEST(ClUserAction, LogTextWrapsTheActions) {
  const auto command = make<ClUserAction>(UserAction::BigBlind);
  EXPECT_EQ(command->toString(), "ClUserAction - action code: BiglBlind");
  command->setAction(UserAction::Raise);
  EXPECT_EQ(command->toString(), "ClUserAction - action code: Raise ");
  command->setAction(UserAction{1024});
  EXPECT_EQ(command->toString(), "ClUserAction - action code: error. Invalid action code!!!!");
}

TEST(SrvTUShowDown, KeepsWinsAndBetsApartAndKnowsNothingOfOthers) {
  const auto command = make<SrvTUShowDown>(cents(5));
  command->addPlayerInfo(SeatID(7), cents(100), cents(250));
  command->addPlayerInfo(SeatID(2), cents(100), cents(0));
  command->addPlayerInfo(SeatID(2), cents(150), cents(0));
  command->addFinalUser({kOwnAce}, SeatID(7), cents(250), SDInfo::Winner);
  command->addFinalUser({Card()}, SeatID(2), cents(0), SDInfo::NotWinner);
  EXPECT_EQ(command->wins(SeatID(7)), cents(250));
  EXPECT_EQ(command->bets(SeatID(7)), cents(100));
  EXPECT_EQ(command->bets(SeatID(2)), cents(150));
  EXPECT_EQ(command->wins(SeatID(3)), cents(0));
  EXPECT_EQ(command->bets(SeatID()), cents(0));
  EXPECT_EQ(command->getUserCards()[0].getSeatID(), SeatID(7)) << "in the order of the calls";
  EXPECT_EQ(command->getUserCards()[1].winnerType(), SDInfo::NotWinner);
}

// ---- the bases, sent as they are

TEST(TableBases, WriteTheCodeOfTheirCreatorAndTheirFields) {
  EXPECT_EQ(toHex(encode(SrvTableStateUpdate(CommandType::SrvUserTurn))), "3A 01 64 00");
  SrvTableStateUpdate update(CommandType::OutOfMoney, SeatID(7), true);
  EXPECT_EQ(toHex(encode(update)), "3D 01 07 01");
  SrvTableStateUpdate other(CommandType::SrvUserTurn);
  other = update;
  EXPECT_EQ(toHex(encode(other)), "3A 01 07 01") << "assignment keeps the code";
  EXPECT_EQ(toHex(encode(SrvCommandGame(CommandType::SrvAddToWaitListError, 0x01020304))), "2C 01 04 03 02 01");
  SrvMsgCommand message(CommandType::SrvAdminMsg);
  EXPECT_EQ(toHex(encode(message)), "28 01 00");
  EXPECT_EQ(SrvMsgCommand(CommandType::SrvAdminMsg, SrvMsgCommand::TableCloses).getMsg(),
            "This table closes after the current hand.");
  EXPECT_EQ(SrvMsgCommand(CommandType::SrvAdminMsg, 4).getMsg(), "") << "a number without a message";
  EXPECT_EQ(message.clone(), nullptr) << "has no pool";
}

// ---- chat

TEST(ChatMessages, TakeNullForEmptyAndKeepSenderAndMessageApart) {
  const auto said = make<ClChatMsg>("x", ChatMsgTypes::Bold);
  said->init(nullptr, ChatMsgTypes::Normal);
  EXPECT_EQ(toHex(bodyOf(*said)), "00 00");
  const auto heard = make<SrvChatMsg>("b", "a", ChatMsgTypes::HostChat, ChatMsgTypes::Highlighted);
  EXPECT_EQ(toHex(bodyOf(*heard)), "61 00 62 00 03 02") << "the sender travels first";
  EXPECT_EQ(heard->getMessage() + heard->getSender(), "ba");
  heard->init(nullptr, nullptr, ChatMsgTypes::ChatType{255}, ChatMsgTypes::ChatStyle{254});
  EXPECT_EQ(toHex(bodyOf(*heard)), "00 00 FF FE");
  EXPECT_EQ(toHex(bodyOf(*make<SrvAdminMsg>("t", "m", std::uint8_t{7}))), "74 00 6D 00 07");
}

}  // namespace
}  // namespace poker::test

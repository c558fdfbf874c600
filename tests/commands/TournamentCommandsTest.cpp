#include <CommandProcessor/commands/tournament/TournamentCommands.h>
#include <CommandProcessor/types/DurationText.h>
#include <CommandProcessor/types/FieldJson.h>
#include <hostkit/CommandHandle.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace poker::test {
namespace {

using TOUR_NAMES::SwitchType;
using TOUR_NAMES::TourStatus;
using TOUR_NAMES::TourType;

RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }
const TourMoneyChooser kChoice(cents(3), cents(4), false);

// ---- what players are told

template <class T, class... Args>
void expectReasons(const std::map<int, std::string>& texts, const Args&... args) {
  for (int code = 0; code < 256; ++code) {
    const auto known = texts.find(code);
    EXPECT_EQ(make<T>(static_cast<typename T::Reason>(code), 7u, args...)->reasonStr(),
              known != texts.end() ? known->second : "")
        << code;
  }
}

TEST(TournamentTexts, KeepEveryReasonByteForByte) {
  expectReasons<SrvTourRegisterResult>({{1, "You are successfully registered."},
                                        {2, R"(You need to enter a password for this private tournament
 in order to register.)"},
                                        {3, R"(The password you entered for this private
tournament is not correct !)"},
                                        {4, "You are already registered on this tournament."},
                                        {5, "Tournament is already started!"},
                                        {6, "Registration error!"},
                                        {7, R"(You have reached your participation limit (taking part
in several tournaments at the same time.)
You can not register!)"},
                                        {8, "You have reached your won tournaments limit. You can not register!"},
                                        {9, "Sorry, you can't participate in this tournament."},
                                        {10, R"(Registration error!
For more information please contact @>SUPPORT<@)"}},
                                       kChoice);
  expectReasons<SrvTourUnregisterResult>(
      {{1, "You are successfully unregistered."}, {2, "Tournament is already started!"}, {3, "Unable to unregister."}});
  expectReasons<SrvTourProtectionError>({{1, R"(This tournament has strict password protection !
You must register first in order to observe tournament room or tournament tables.)"}});
}

TEST(SrvTourStartInfo, TellsWhatIsWaitedFor) {
  const auto text = [](int players, int seconds) { return make<SrvTourStartInfo>(players, seconds)->infoText(); };
  const auto startsIn = [](int seconds) { return "The tournament will start in " + durationToString(seconds); };
  const std::map<std::int64_t, std::string> waits = {
      {0x7FFFFFFE, "The tournament is in time break. "},
      {0x7FFFFFFC, "The tournament is suspended by the HOST. "},
      {0, ""},
      {INT32_MIN, ""},
  };
  for (const int seconds : {INT32_MIN, -1, 0, 1, 59, 90, INT32_MAX}) {
    const std::string start = seconds > 0 ? startsIn(seconds) : "";
    EXPECT_EQ(text(0x7FFFFFFF, seconds), "The table will resume when one of the players returns.");
    EXPECT_EQ(text(0x7FFFFFFD, seconds), "The table will start in " + durationToString(seconds));
    for (const auto& [players, wait] : waits) EXPECT_EQ(text(static_cast<int>(players), seconds), wait + start);
  }
  EXPECT_EQ(text(3, 90),
            "The tournament will start when another 3 player(s) register.After 90seconds (1 min)" + startsIn(90));
  EXPECT_EQ(text(1, 59),
            "The tournament will start when another 1 player(s) register.After 59seconds (0 min)" + startsIn(59));
  EXPECT_EQ(
      text(0x7FFFFFFB, 120),
      "The tournament will start when another 2147483643 player(s) register.After 120seconds (2 min)" + startsIn(120));
  EXPECT_EQ(text(1, 0), "The tournament will start when one more player registers.");
  EXPECT_EQ(text(2, -1), "The tournament will start when another 2 players register.");
  EXPECT_EQ(text(4, 0), "The tournament will start when another 4 players register.");
}

TEST(SrvTourStartInfo, KnowsItsSpecialCounts) {
  const auto states = [](int players, int seconds) {
    const auto info = make<SrvTourStartInfo>(players, seconds);
    return std::vector<bool>{info->isBreak(), info->isSuspended(), info->shouldStay()};
  };
  for (const int seconds : {0, 5, -1}) {
    EXPECT_EQ(states(0x7FFFFFFF, seconds), std::vector<bool>({false, false, false}));
    EXPECT_EQ(states(0x7FFFFFFE, seconds), std::vector<bool>({true, false, true}));
    EXPECT_EQ(states(0x7FFFFFFD, seconds), std::vector<bool>({false, false, true}));
    EXPECT_EQ(states(0x7FFFFFFC, seconds), std::vector<bool>({false, seconds == 0, false}));
    EXPECT_EQ(states(3, seconds), std::vector<bool>({false, false, false}));
  }
  const auto info = make<SrvTourStartInfo>(+SrvTourStartInfo::HostBreakSpecialPlayerCountValue, 5);
  info->setSeconds(0);
  EXPECT_TRUE(info->isSuspended());
}

TEST(SrvGetExtraMoneyReply, KeepsEveryTextByteForByte) {
  using Reply = SrvGetExtraMoneyReply;
  for (const int type : {0, 1, 2, 255}) {
    const std::string kind = type == 1 ? "Re-Buy" : "Add-On";
    const std::map<int, std::string> texts = {
        {0, "Sorry, your " + kind + " was not completed successfully."},
        {1, "Your " + kind + " was successfully completed."},
        {2, "Sorry, your " + kind + " was not completed successfully."},
        {3, "\nSorry, you cannot make " + std::string(type == 1 ? "a Re-Buy" : "an Add-On") +
                " this late in the tournament."},
        {4, "\nSorry, you do not have any Re-Buys left"},
        {5, "\nSorry, you do not have enough money."},
        {6, "Sorry, you cannot rebuy until your balance goes below the starting amount."},
        {7, "Sorry, you cannot rebuy until the tournaments starts."},
        {8, "Sorry, " + kind +
                " is not allowed once a player has been awarded a prize. Contact the HOST for more information."},
    };
    for (int reason = 0; reason < 256; ++reason) {
      for (const std::uint32_t rebuys : {0u, 1u, 3u, 4294967295u}) {
        const auto reply = make<Reply>(Reply::RequestType(type), Reply::Reason(reason), rebuys, false);
        const auto known = texts.find(reason);
        std::string text = known != texts.end() ? known->second : "";
        EXPECT_EQ(reply->reasonToString(true), text) << reason << ' ' << type;
        if (type == 1 && reason == 1 && rebuys == 1) text += "\nYou have 1 Re-Buy left";
        if (type == 1 && reason == 1 && rebuys > 1) text += "\nYou have " + std::to_string(rebuys) + " Re-Buys left";
        EXPECT_EQ(reply->reasonToString(false), text) << reason << ' ' << type << ' ' << rebuys;
      }
    }
  }
}

// ---- which tournament a client means

/// The place of a virtual operation in its class's table, in bytes.
template <class Operation>
std::ptrdiff_t slotOf(Operation operation) {
  std::ptrdiff_t words[2];
  static_assert(sizeof words == sizeof operation);
  std::memcpy(words, &operation, sizeof words);
  return words[0];
}

TEST(ClientTourCommandBase, TellsTheTournamentInTheSlotBehindProcess) {
  EXPECT_EQ(
      slotOf(&ClientTourCommandBase::tournamentId) - slotOf(&PokerCommandTmpl<ClientTourCmdProcessorType>::process),
      static_cast<std::ptrdiff_t>(sizeof(void*)));

  const auto idOf = [](const ClientTourCommandBase& command) { return command.tournamentId(); };
  using Request = ExtraMoneyRequest;
  EXPECT_EQ(idOf(*make<ClGetTournamentsInfo>(TourType::MultiTable, 5u)), 0u);
  EXPECT_EQ(idOf(*make<ClGetTourDetails>(7u, 5u)), 7u);
  EXPECT_EQ(idOf(*make<ClGetMultiInitializeInfo>(7u)), 7u);
  EXPECT_EQ(idOf(*make<ClGetUpdateInfo>(1u, 2u, 3u, 7u, 5u, 6u)), 7u);
  EXPECT_EQ(idOf(*make<ClUnsubscribeClient>(7u)), 7u);
  EXPECT_EQ(idOf(*make<ClSubscribeForTable>(5u, 7u)), 7u);
  EXPECT_EQ(idOf(*make<ClGetTourTableInfo>(7u, 5u)), 7u);
  EXPECT_EQ(idOf(*make<ClTourUnregister>(7u)), 7u);
  EXPECT_EQ(idOf(*make<ClTourRegister>(7u, kChoice, "pw")), 7u);
  EXPECT_EQ(idOf(*make<ClGetTourMoney>(7u)), 7u);
  EXPECT_EQ(idOf(*make<ClMoveMe2MyTable>(7u, 5u)), 7u);
  EXPECT_EQ(idOf(*make<ClGetExtraMoney>(Request::Rebuy, true, 5u, 7u, kChoice)), 7u);
}

TEST(ClBigInfoSent, KeepsTheTournamentAtHome) {
  const auto command = make<ClBigInfoSent>(7u);
  EXPECT_EQ(command->tournamentId(), 7u);
  EXPECT_EQ(toHex(encode(*command)), "88 04");
  ASSERT_EQ(decode(*command, {}), "");
  EXPECT_EQ(command->tournamentId(), 0u);
}

TEST(ClGetTournamentsInfo, AsksForTheFirstKindUnlessTold) {
  CachedCmdCreator<ClGetTournamentsInfo>::clearCache();  // so that it is constructed
  const auto command = CommandHandle<ClGetTournamentsInfo>::create();
  EXPECT_EQ(toHex(encode(*command)), "7D 04 01 00 00 00 00");
}

// ---- what the golden lines, which name each field, cannot see

TEST(TournamentInits, PutLikeArgumentsInTheirOwnFields) {
  const std::string choice = R"({"first":"0.03","second":"0.04","chosen":false})";
  EXPECT_EQ(fieldsToJson(*make<ClGetUpdateInfo>(1u, 2u, 3u, 4u, 5u, 6u)),
            R"({"tablesVer":1,"playersVer":2,"textVer":3,"tournamentId":4,"prizeVersion":5,"fundVer":6})");
  EXPECT_EQ(fieldsToJson(*make<ClGetExtraMoney>(ExtraMoneyRequest::AddOn, true, 3u, 4u, kChoice)),
            R"({"rebuys":3,"state":true,"tournamentId":4,"type":2,"moneyChooser":)" + choice + "}");
  EXPECT_EQ(fieldsToJson(*make<SrvLevelSwitch>(cents(1), cents(2), std::int16_t{3}, 4, SwitchType{5}, true)),
            R"({"lowBet":"0.01","highBet":"0.02","level":3,"units":4,"switchType":5,"switching":true})");
  const auto price = [](int cash) { return TourMoneyType(cents(cash), cents(cash + 1)); };
  EXPECT_EQ(fieldsToJson(*make<SrvTourMoney>(price(1), price(3), price(5), 7u)),
            R"({"buyIn":{"cash":"0.01","tourMoney":"0.02"},"fee":{"cash":"0.03","tourMoney":"0.04"},)"
            R"("total":{"cash":"0.05","tourMoney":"0.06"},"tourID":7})");
  EXPECT_EQ(price(1) + price(3), TourMoneyType(cents(4), cents(6)));
  EXPECT_EQ(fieldsToJson(*make<SrvUpdatePrizeFund>(3u, PrizeFundInfo(), 4u)),
            R"({"fund":{"texts":[],"summary":""},"version":3,"tourID":4})");
  EXPECT_EQ(fieldsToJson(*make<SrvUpdatePrizeDescr>(PrizeSchemeInfoMap(), 3u, 4u)),
            R"({"prizes":{"isFinal":false,"rows":[]},"tourID":3,"prizeVersion":4})");
  const auto picture = make<SrvMultiTourInitialize>(MultiTourTablesInfo(), MultiTourPlayersInfo(), MultiTourTextInfo(),
                                                    3u, PrizeSchemeInfoMap(), PrizeFundInfo(), 4u, 5u);
  EXPECT_EQ(picture->tourID(), 3u);
  EXPECT_EQ(picture->prizeVersion(), 4u);
  EXPECT_EQ(picture->getFundVersion(), 5u);
}

// ---- records

PrizeSchemeInfoMap somePrizes() {
  PrizeSchemeInfoMap prizes;
  PrizeSchemeInfoRow row;
  for (const int place : {2, 1, 2, 1}) {
    row.place = place;
    row.amount += 1;
    prizes.add(row);
  }
  prizes.setFinal(true);
  return prizes;
}

TEST(PrizeSchemeInfoMap, KeepsThePrizesOfAPlaceInTheirOrder) {
  PrizeSchemeInfoMap prizes = somePrizes();
  std::string amounts;
  for (const auto& [place, row] : prizes.rows()) amounts += std::to_string(place) + ':' + row.amount.toString() + ' ';
  EXPECT_EQ(amounts, "1:2 1:4 2:1 2:3 ");
  ASSERT_EQ(decode(prizes, hex("00 00 00 00 00")), "");
  EXPECT_TRUE(prizes.rows().empty());
  EXPECT_FALSE(prizes.isFinal()) << "the flag is read though there are no prizes";
}

// As text for a database: lists in lists, maps, texts that want escapes, dates.
template <class T>
void expectStored(const T& record) {
  T read;
  read.fromDbText(record.toDbText());
  EXPECT_EQ(toHex(encode(read)), toHex(encode(record)));
  EXPECT_THROW(read.fromDbText(R"({"another":1})"), DbTextError);
  EXPECT_EQ(encode(read), encode(record)) << "changed by a text that is none of its own";
  const DbSerializableI& stored = read;
  EXPECT_EQ(stored.toDbText(), record.toDbText());
}

TEST(TournamentRecords, AreReadBackFromADatabaseAsTheyTravel) {
  TournamentsInfo tournaments;
  TourListEntry& entry = tournaments.tournaments.emplace_back();
  entry.name = "M\xFCn\"chen";
  entry.starts = COleDateTime(44000.75);
  entry.cost.buyIn = kChoice;
  entry.cost.currency = {'E', 'U', 'R', 0};
  entry.status = TourStatus{99};
  entry.skin = {0, 255};
  tournaments.removedTournaments = {3, 1, 3};
  expectStored(tournaments);
  expectStored(somePrizes());
  MultiTourTextInfo texts;
  texts.texts.set(MultiTourText::Rules, "one\ntwo");
  texts.texts.set(MultiTourText{255}, "");
  expectStored(texts);
}

}  // namespace
}  // namespace poker::test

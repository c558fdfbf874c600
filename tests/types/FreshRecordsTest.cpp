// What a record holds before anybody gave it anything: zeros and nothing, but for what is named here.

#include <CommandProcessor/types/CardVector.h>
#include <CommandProcessor/types/CashierTransaction.h>
#include <CommandProcessor/types/ClientTableState.h>
#include <CommandProcessor/types/CommonTypes.h>
#include <CommandProcessor/types/CreditCardInfo.h>
#include <CommandProcessor/types/GameStartupInfo.h>
#include <CommandProcessor/types/MemberProfileInfo.h>
#include <CommandProcessor/types/MultiStartInfo.h>
#include <CommandProcessor/types/MultiTourMoneyInfo.h>
#include <CommandProcessor/types/MultiTourPlayersInfo.h>
#include <CommandProcessor/types/MultiTourTablesInfo.h>
#include <CommandProcessor/types/MultiTourTextInfo.h>
#include <CommandProcessor/types/MultiTourneyInfo.h>
#include <CommandProcessor/types/NextTurnOptions.h>
#include <CommandProcessor/types/Pot.h>
#include <CommandProcessor/types/PrizeFundInfo.h>
#include <CommandProcessor/types/PrizeSchemeInfoMap.h>
#include <CommandProcessor/types/PromoBucksInfo.h>
#include <CommandProcessor/types/PromoHighHandInfo.h>
#include <CommandProcessor/types/ReplayRequestInfo.h>
#include <CommandProcessor/types/SDInfo.h>
#include <CommandProcessor/types/SeatIDSet.h>
#include <CommandProcessor/types/ServerTableEntry.h>
#include <CommandProcessor/types/ServerUpdateInfo.h>
#include <CommandProcessor/types/TableInfoDetailed.h>
#include <CommandProcessor/types/TourMoneyType.h>
#include <CommandProcessor/types/TourPlayerEntry.h>
#include <CommandProcessor/types/TournamentDetailedInfo.h>
#include <CommandProcessor/types/TournamentsInfo.h>
#include <CommandProcessor/types/UserAddress.h>
#include <CommandProcessor/types/UserCardsInfoVector.h>
#include <CommandProcessor/wire/FieldVisitor.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace poker::test {
namespace {

/// Notes the fields that are not zero, and looks at one empty element of every list and map.
class NotZero : public FieldVisitor {
 public:
  std::set<std::string> found;

  void number(const Field& field, std::int64_t& value) override {
    if (value != 0) note(field, std::to_string(value));
  }
  void real(const Field& field, double& value) override {
    if (value != 0) note(field, std::to_string(value));
  }
  void text(const Field& field, std::string& value) override {
    if (!value.empty()) note(field, value);
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    for (const std::uint8_t byte : value) {
      if (byte != 0) note(field, std::to_string(byte));
    }
  }
  void beginRecord(const Field&) override {}
  void endRecord(const Field&) override {}
  std::size_t beginList(const Field& field, std::size_t size) override {
    if (size != 0) note(field, std::to_string(size));
    return 1;
  }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field& field, std::size_t size) override { return beginList(field, size); }
  void endMap(const Field&) override {}

 private:
  void note(const Field& field, const std::string& value) { found.insert(std::string(field.name) + '=' + value); }
};

template <class... Records>
std::set<std::string> notZeroIn() {
  NotZero visitor;
  (Records().visitFields(visitor), ...);
  return visitor.found;
}

TEST(FreshRecords, HoldZerosAndNothing) {
  const std::set<std::string> expected = {
      "=100",         "seatID=100", "ownSeat=100", "dealerSeat=100", "killSeat=100", "turnSeat=100",  // no seat
      "visibility=1",              // a card lies face down
      "empty=1",      "chosen=1",  // nothing to pay
      "type=1",                    // single-table
  };
  EXPECT_EQ((notZeroIn<BaseTableState, CardVector, CashierTransaction, ClientSeatState, ClientTableState,
                       CommonTypes::HardwareInfo, CommonTypes::NewAccountInfo, CreditCardInfo, GameStartupInfo,
                       MemberProfileInfo, MultiStartInfo, MultiTourMoneyInfo, MultiTourPlayersInfo, MultiTourTablesInfo,
                       MultiTourTextInfo, MultiTourneyInfo, NextTurnOptions, Pot, PrizeFundInfo, PrizeSchemeInfoRow,
                       PrizeSchemeInfoMap, PromoBucksInfo, PromoHighHandInfo, ReplayInfo, ReplayRequestInfo, SDInfo,
                       SeatIDSet, ServerTableEntry, ServerUpdateInfo, TableInfoDetailed, TourListCost, TourListEntry,
                       TourMoneyChooser, TourMoneyType, TourPlayerEntry, TourPlayerMoneyEntry, TournamentDetailedInfo,
                       TournamentsInfo, UserAddress, UserCardsInfoVector>()),
            expected);
}

}  // namespace
}  // namespace poker::test

#include <CommandProcessor/core/Catalogue.h>

#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/ClientMiscCmdProcessor.h>
#include <CommandProcessor/core/ClientTourCmdProcessor.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <CommandProcessor/core/SrvTourCmdProcessor.h>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string_view>
#include <type_traits>
#include <utility>

namespace poker {
namespace {

TEST(Catalogue, HoldsEveryCommandOfEachFamily) {
  std::map<int, std::size_t> counts;
  for (const CommandDescription& row : commandCatalogue()) ++counts[static_cast<int>(row.family)];
  EXPECT_EQ(counts, (std::map<int, std::size_t>{{0, 4}, {1, 69}, {2, 28}, {3, 22}, {4, 13}, {6, 21}}));
}

TEST(Catalogue, FindsEveryRowByNameAndByPair) {
  std::set<std::pair<ProcessorFamily, std::uint8_t>> pairs;
  for (const CommandDescription& row : commandCatalogue()) {
    EXPECT_EQ(findCommand(row.name), &row) << row.name;

    const auto found = findCommands(row.family, row.code);
    const bool shared = row.family == ProcessorFamily::ClientMisc && row.code == 117;
    EXPECT_EQ(found.size(), shared ? 2u : 1u) << row.name;
    EXPECT_TRUE(&row == &found.front() || &row == &found.back()) << row.name;
    EXPECT_EQ(pairs.emplace(row.family, row.code).second, row.name != "ClMiscIncreasePlayMoney") << row.name;
  }
}

TEST(Catalogue, KeepsOneCodeOfDifferentFamiliesApart) {
  const auto nameOf = [](ProcessorFamily family, std::uint8_t code) { return findCommands(family, code).front().name; };
  EXPECT_EQ(nameOf(ProcessorFamily::Server, 103), "SrvPasswordError");
  EXPECT_EQ(nameOf(ProcessorFamily::ServerTour, 103), "SrvTourTableInfo");
  EXPECT_EQ(nameOf(ProcessorFamily::ClientMisc, 103), "ClMiscGetPromoInfo");
  EXPECT_EQ(nameOf(ProcessorFamily::Client, 136), "ClScriptSetDealer");
  EXPECT_EQ(nameOf(ProcessorFamily::ClientTour, 136), "ClBigInfoSent");
  EXPECT_EQ(nameOf(ProcessorFamily::Connection, 201), "SrvErrorDisconnected");
  EXPECT_EQ(nameOf(ProcessorFamily::Server, 205), "SrvMaintenance");
  EXPECT_EQ(nameOf(ProcessorFamily::Client, 208), "ClSSLHandshakeData");
}

TEST(Catalogue, FindsNothingForUnknownNamesAndPairs) {
  for (const char* name : {"", "ClSitDow", "ClSitDownn", "clSitDown", "AAA", "zzz", "SrvMsgCommand"})
    EXPECT_EQ(findCommand(name), nullptr) << name;

  std::size_t named = 0;
  for (int family = 0; family < 256; ++family) {
    for (int code = 0; code < 256; ++code)
      named += findCommands(static_cast<ProcessorFamily>(family), static_cast<std::uint8_t>(code)).size();
  }
  EXPECT_EQ(named, commandCatalogue().size());
}

TEST(Catalogue, GivesEachConnectionCommandItsOwnDirection) {
  for (const CommandDescription& row : commandCatalogue()) {
    // The one class from the client without the prefix.
    const bool fromClient = row.name.starts_with("Cl") || row.name == "UpdateHardwareInfo";
    EXPECT_EQ(toText(row.direction), fromClient ? "client to server" : "server to client") << row.name;
  }
}

TEST(Catalogue, NamesNoHandlerWhereNoneIsReached) {
  std::set<std::string_view> unhandled;
  for (const CommandDescription& row : commandCatalogue())
    if (row.handler.empty()) unhandled.insert(row.name);
  EXPECT_EQ(unhandled, (std::set<std::string_view>{"ClBuyChips", "ClSSLHandshakeData", "SrvCompressedCommands",
                                                   "SrvSSLHandshakeData"}));
}

template <class Class, class Processor, class Results, class Command>
constexpr bool takes(void (Processor::*)(Results, Command)) {
  return std::is_same_v<std::remove_cvref_t<Command>, Class>;
}
template <class Class, class Processor, class Command>
constexpr bool takes(void (Processor::*)(Command)) {
  return std::is_same_v<std::remove_cvref_t<Command>, Class>;
}

// Command sources call their handlers themselves; nothing else would notice a catalogue that tells another one.
TEST(Catalogue, NamesTheHandlerThatTakesTheClass) {
#define COMMAND(FAMILY, CODE, CLASS, PROCESSOR, HANDLER) EXPECT_TRUE(takes<CLASS>(&PROCESSOR::HANDLER)) << #CLASS;
#define UNHANDLED_COMMAND(FAMILY, CODE, CLASS, PROCESSOR)
#include <CommandProcessor/core/CommandList.inc>
}

}  // namespace
}  // namespace poker

#include <CommandProcessor/core/Catalogue.h>

#include <gtest/gtest.h>

#include <set>
#include <string_view>
#include <utility>

namespace poker {
namespace {

// How many rows a family has, a walk over all pairs counts (Decode, in hostkit/); a walk over all classes calls the handlers.
TEST(Catalogue, FindsEveryRowByNameAndByPair) {
  std::set<std::pair<ProcessorFamily, std::uint8_t>> pairs;
  std::set<std::string_view> unhandled;
  for (const CommandDescription& row : commandCatalogue()) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(findCommand(row.name), &row);

    const auto found = findCommands(row.family, row.code);
    const bool shared = row.family == ProcessorFamily::ClientMisc && row.code == 117;
    EXPECT_EQ(found.size(), shared ? 2u : 1u);
    EXPECT_TRUE(&row == &found.front() || &row == &found.back());
    EXPECT_EQ(pairs.emplace(row.family, row.code).second, row.name != "ClMiscIncreasePlayMoney");

    // The one class from the client without the prefix.
    const bool fromClient = row.name.starts_with("Cl") || row.name == "UpdateHardwareInfo";
    EXPECT_EQ(toText(row.direction), fromClient ? "client to server" : "server to client");
    if (row.handler.empty()) unhandled.insert(row.name);
  }
  EXPECT_EQ(unhandled, (std::set<std::string_view>{"ClBuyChips", "ClSSLHandshakeData", "SrvCompressedCommands",
                                                   "SrvSSLHandshakeData"}));
  for (const char* name : {"", "ClSitDow", "ClSitDownn", "clSitDown", "AAA", "zzz", "SrvMsgCommand"}) {
    EXPECT_EQ(findCommand(name), nullptr) << name;
  }
}

}  // namespace
}  // namespace poker

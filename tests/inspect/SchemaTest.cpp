#include <inspect/schema/Schema.h>
#include <inspect/schema/SchemaJson.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace poker::test {
namespace {

TEST(Schema, HasTheDocumentedJsonForm) {
  const auto json = [](const char* name) { return schemaJson(*CommandSchema::find(name)); };
  EXPECT_EQ(json("ClSitDown"),
            R"({"command":"ClSitDown","family":2,"code":119,"direction":"client to server","handler":"onClSitDown",)"
            R"("fields":[{"name":"seatID","type":"byte"},{"name":"money","type":"money"},)"
            R"({"name":"moneyChooser","type":"TourMoneyChooser","fields":[)"
            R"({"name":"empty","type":"bool","derived":true},{"name":"first","type":"money","when":"empty is false"},)"
            R"({"name":"second","type":"money","when":"empty is false"},)"
            R"({"name":"chosen","type":"bool","when":"empty is false"}]}]})");
  const std::vector<std::pair<const char*, const char*>> parts = {
      {"SrvCompressedCommands", R"("handler":"","fields":[{"name":"realSize","type":"u32"},)"
                                R"({"name":"body","type":"bytes","count":"u32"}])"},
      {"SrvCardDeal", R"({"name":"cards","type":"list","count":"u32","of":{"type":"card"}})"},
      {"SrvUserTurn",
       R"({"name":"options","type":"map","count":"byte","key":{"type":"u32"},"value":{"type":"TurnRange",)"},
      {"SrvBetRoundComplete", R"({"name":"flags","type":"flags","of":[{"name":"moveChips","type":"bool","mask":15},)"},
      {"ClRplGetHandHistory", R"({"name":"from","type":"date-time-status","when":"mask has 0x08"})"},
  };
  for (const auto& [name, part] : parts) EXPECT_THAT(json(name), testing::HasSubstr(part));
  std::string all;
  for (const CommandSchema& schema : CommandSchema::all()) all += schemaJson(schema);
  for (const char* part :
       {R"({"type":"zeros","size":5})", R"("type":"flags","bits":[")", R"("type":"bytes","size":)",
        R"("type":"string","max":50})", R"("type":"u32","derived":true})", R"("type":"list","of":{)"}) {
    EXPECT_THAT(all, testing::HasSubstr(part));
  }
}

}  // namespace
}  // namespace poker::test

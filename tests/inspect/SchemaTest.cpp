#include <inspect/schema/Schema.h>
#include <inspect/schema/SchemaJson.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace poker::test {
namespace {

/// Walks a schema as a reader meets its fields.
void checkRecord(const std::vector<SchemaField>& fields, std::vector<std::string>& numbers) {
  const std::size_t outer = numbers.size();
  std::set<std::string> names;
  const auto isEarlier = [&](const std::string& name) {
    return std::find(numbers.begin(), numbers.end(), name) != numbers.end();
  };
  for (const SchemaField& field : fields) {
    SCOPED_TRACE(field.name);
    if (field.type != FieldType::Zeros) {
      EXPECT_TRUE(names.insert(field.name).second) << "the name stands twice in one record";
    }
    for (const FieldCondition& condition : field.conditions) {
      EXPECT_TRUE(isEarlier(condition.field)) << "hangs on " << condition.field << ", which is no earlier number";
    }
    if (field.type == FieldType::List && !field.count) {
      EXPECT_TRUE(isEarlier(field.countedBy)) << "is counted by " << field.countedBy << ", which is no earlier number";
    }
    const bool isContainer =
        field.type == FieldType::List || field.type == FieldType::Map || field.type == FieldType::Record;
    EXPECT_EQ(field.fields.size(), field.type == FieldType::List  ? 1
                                   : field.type == FieldType::Map ? 2
                                   : isContainer                  ? field.fields.size()
                                                                  : 0);
    if (field.isPacked()) continue;
    if (isContainer) {
      checkRecord(field.fields, numbers);
    } else {
      numbers.push_back(field.name);
    }
  }
  numbers.resize(outer);
}

// A reader without the class has nothing but the schema: it must tell everything, and nothing twice.
TEST(Schema, TellsWhatAReaderNeedsOfEveryClass) {
  EXPECT_EQ(CommandSchema::all().size(), commandCatalogue().size());
  for (const CommandSchema& schema : CommandSchema::all()) {
    SCOPED_TRACE(schema.name());
    std::vector<std::string> numbers;
    checkRecord(schema.fields, numbers);
    EXPECT_EQ(CommandSchema::find(schema.name()), &schema);
  }
  EXPECT_EQ(CommandSchema::find("ClNothing"), nullptr);
}

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

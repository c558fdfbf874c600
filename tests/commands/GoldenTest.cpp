// Every line of tests/golden/*.txt in both directions: the values written give exactly the bytes, and the bytes read
// give exactly the values. The bytes were written down from the format, not by our writer, so that two fields that are
// swapped in a field list (which serves both ways) are seen here.

#include <CommandProcessor/core/Catalogue.h>
#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/wire/CommandDeserializeException.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <inspect/CommandFields.h>
#include <inspect/CommandText.h>
#include <tests/support/Golden.h>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace poker {
namespace {

using test::bytesOf;
using test::GoldenLine;
using test::goldenLines;

std::string jsonOf(const PokerCommandI& command) {
  FieldsToJson json(JsonSecrets::kShow);
  CommandFields::of(command)->visit(command, json);
  return json.take();
}

TEST(Golden, BytesAndValuesAgreeBothWays) {
  std::set<std::string> seen;
  for (const GoldenLine& line : goldenLines(CP_TEST_DATA_DIR)) {
    SCOPED_TRACE(line.where + " " + line.name);
    const CommandFields* fields = CommandFields::of(line.name);
    ASSERT_NE(fields, nullptr);
    seen.insert(line.name);
    const auto release = [](PokerCommandI* command) { command->release(); };
    const std::unique_ptr<PokerCommandI, decltype(release)> written(&fields->create(), release);
    const std::unique_ptr<PokerCommandI, decltype(release)> read(&fields->create(), release);
    const std::vector<std::uint8_t> expected = bytesOf(line.hex);

    FieldsFromJson(line.json, JsonSecrets::kShow).run([&](FieldVisitor& values) { fields->assign(*written, values); });
    if (!line.decodeOnly) {
      SerializeCommandBuf buf(4);
      written->serialize(buf);
      std::uint32_t size;
      const std::uint8_t* bytes = buf.finish(size);
      EXPECT_EQ(bytesAsText({bytes + 4, size - 4}), bytesAsText(expected));
    }

    ASSERT_GE(expected.size(), 2u);
    EXPECT_EQ(expected[0], fields->description->code);
    EXPECT_EQ(expected[1], static_cast<std::uint8_t>(fields->description->family));
    DeserializeCommandBuf in(expected.data() + 2, static_cast<std::uint32_t>(expected.size() - 2));
    read->deserialize(in);
    EXPECT_EQ(in.remaining(), 0u);
    EXPECT_EQ(jsonOf(*read), jsonOf(*written));
  }

  // No class is without golden bytes.
  for (const CommandDescription& row : commandCatalogue()) {
    EXPECT_TRUE(seen.count(std::string(row.name))) << row.name << " has no golden line";
  }
}

}  // namespace
}  // namespace poker

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

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace poker {
namespace {

struct GoldenLine {
  std::string where;
  std::string command;
  std::string json;
  std::string hex;
  bool decodeOnly = false;
};

/// `[decode-only] Command {fields} = bytes`, one a line; # begins a comment line.
std::vector<GoldenLine> goldenLines() {
  std::vector<GoldenLine> lines;
  for (const auto& file : std::filesystem::directory_iterator(CP_TEST_DATA_DIR)) {
    if (file.path().extension() != ".txt") continue;
    std::ifstream in(file.path());
    std::string text;
    for (int number = 1; std::getline(in, text); ++number) {
      if (text.find_first_not_of(" \t") == std::string::npos || text[0] == '#') continue;
      GoldenLine line;
      line.where = file.path().filename().string() + ":" + std::to_string(number);
      const std::string mark = "decode-only ";
      if (text.rfind(mark, 0) == 0) {
        line.decodeOnly = true;
        text.erase(0, mark.size());
      }
      const auto open = text.find('{'), close = text.rfind('}'), equals = text.rfind('=');
      if (open == std::string::npos || close == std::string::npos || equals < close || open < 2) {
        ADD_FAILURE() << line.where << ": not a golden line";
        continue;
      }
      line.command = text.substr(0, open - 1);
      line.json = text.substr(open, close - open + 1);
      line.hex = text.substr(equals + 1);
      lines.push_back(line);
    }
  }
  return lines;
}

std::vector<std::uint8_t> bytesOf(const std::string& hex) {
  std::vector<std::uint8_t> bytes;
  std::string digits;
  std::copy_if(hex.begin(), hex.end(), std::back_inserter(digits), [](char c) { return c != ' '; });
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

std::string jsonOf(const PokerCommandI& command) {
  FieldsToJson json(JsonSecrets::kShow);
  CommandFields::of(command)->visit(command, json);
  return json.take();
}

TEST(Golden, BytesAndValuesAgreeBothWays) {
  std::set<std::string> seen;
  for (const GoldenLine& line : goldenLines()) {
    SCOPED_TRACE(line.where + " " + line.command);
    const CommandFields* fields = CommandFields::of(line.command);
    ASSERT_NE(fields, nullptr);
    seen.insert(line.command);
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
    if (CommandFields::of(row.name) != nullptr) {
      EXPECT_TRUE(seen.count(std::string(row.name))) << row.name << " has no golden line";
    }
  }
}

}  // namespace
}  // namespace poker

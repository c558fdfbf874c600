#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/wire/WireNumber.h>
#include <hostkit/CommandFactory.h>
#include <inspect/CommandText.h>
#include <inspect/schema/SchemaJson.h>
#include <inspect/schema/WireWalk.h>
#include <tests/cmdproc/Ran.h>
#include <tests/inspect/RandomFrame.h>
#include <tools/cmdproc/dissector/Dissector.h>
#include <tools/cmdproc/docs/PageSchema.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <string>

namespace poker::test {
namespace {

using Json = nlohmann::json;

std::string realText(std::uint64_t bits) {
  const auto value = std::bit_cast<double>(bits);
  char text[40];
  if (std::isfinite(value)) return std::string(text, std::to_chars(text, std::end(text), value).ptr);
  std::snprintf(text, sizeof text, "0x%016llX", static_cast<unsigned long long>(bits));
  return text;
}

std::string flagNames(const SchemaField& flags, std::int64_t byte) {
  std::string names;
  for (const SchemaField& flag : flags.fields) {
    if ((byte & flag.mask) != 0) names += (names.empty() ? "" : ", ") + flag.name;
  }
  return names.empty() ? "none" : names;
}

std::string valueText(const WirePiece& piece) {
  if (piece.field->isCard()) return cmdproc::cardText(piece.bytes[0]);
  if (piece.field->isFlags()) return flagNames(*piece.field, piece.bytes[0]);
  switch (piece.type()) {
    case FieldType::String:
      return quoted(piece.text());
    case FieldType::Bytes:
      return bytesAsText(piece.bytes);
    case FieldType::Zeros:
      return {};
    case FieldType::Double:
    case FieldType::DateTime:
      return realText(piece.bits());
    case FieldType::Bool:
      return piece.number() != 0 ? "true" : "false";
    case FieldType::Money:
      return RealMoneyType::fromHundredths(piece.number()).toString();
    case FieldType::U64:
      return std::to_string(static_cast<std::uint64_t>(piece.number()));
    default:
      return std::to_string(piece.number());
  }
}

/// What the walk makes of a frame: readers in other languages must make the same of it.
Json sampleOf(const CommandSchema& schema, const std::vector<std::uint8_t>& frame) {
  Json rows = Json::array();
  const auto failure = walkCommand(schema, std::span(frame).subspan(4), [&](const WirePiece& piece) {
    const std::string type = piece.isCount ? std::string(fieldTypeName(piece.type())) : typeText(*piece.field);
    rows.push_back(
        {piece.offset + 4, piece.bytes.size(), piece.path, type, valueText(piece), piece.isCount, piece.field->secret});
  });
  Json sample{{"class", schema.name()}, {"hex", bytesAsText(frame)}, {"rows", rows}, {"failure", nullptr}};
  if (failure) sample["failure"] = {failure->path, failure->offset + 4, failure->remaining, failure->problem};
  return sample;
}

/// Random and damaged commands of all classes, as walkCommand reads them.
class SchemaReaders : public testing::Test {
 protected:
  void SetUp() override {
    std::mt19937_64 random(62);
    std::ofstream file(samples_);
    for (const CommandSchema& schema : CommandSchema::all()) {
      const CommandDescription& description = *schema.description;
      // A pair that names two classes is read as one of them.
      if (CommandFactory::find(description.family, description.code)->name() != schema.name()) continue;
      for (int round = 0; round < 4; ++round) {
        const Bytes frame = randomFrame(schema, random());
        file << sampleOf(schema, frame) << '\n';
        for (int damage = 0; damage < 4; ++damage) {
          Bytes wrong = frame;
          const auto place = static_cast<std::ptrdiff_t>(6 + random() % (wrong.size() - 5));
          if (damage == 0) {
            wrong.resize(static_cast<std::size_t>(place));
          } else if (damage == 1) {
            wrong.insert(wrong.begin() + place, 1 + random() % 80, 'x');  // also a text that is longer than it may be
          } else if (wrong.size() > 6) {
            wrong[6 + random() % (wrong.size() - 6)] ^= static_cast<std::uint8_t>(1 + random() % 255);
          }
          wire::storeLittleEndian(wrong.data(), static_cast<std::uint32_t>(wrong.size()));
          file << sampleOf(schema, wrong) << '\n';
        }
      }
    }
    file.close();
    ASSERT_TRUE(file.good());
  }
  void expectAgrees(const std::string& script) {
    const std::string line =
        "\"" CP_TEST_DATA_DIR "/../cmdproc/" + script + "\" \"" CMDPROC_PROGRAM "\" \"" + samples_ + "\"";
    EXPECT_EQ(std::system(line.c_str()), 0) << line;
  }

 private:
  TempFolder folder_;
  const std::string samples_ = folder_.file("samples.jsonl");
};

// What else the page and the plugin must do, the scripts check by themselves.
TEST_F(SchemaReaders, ThePageInABrowserWithoutANetwork) { expectAgrees("reference-page"); }

TEST_F(SchemaReaders, ThePluginForWireshark) {
  if (std::system("tshark --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "there is no tshark (Debian: tshark)";
  expectAgrees("dissector");
}

// The filters over all commands find what stands in commands under many names.
TEST(Dissector, SharesTheFiltersOfSeatsAndGames) {
  std::map<std::string_view, std::set<std::string>> named;
  const std::function<void(const SchemaField&, const SchemaField*)> collect = [&](const SchemaField& field,
                                                                                  const SchemaField* container) {
    const std::string name = container != nullptr ? container->name + '/' + field.name : field.name;
    named[cmdproc::sharedFilter(field, container)].insert(name);
    const bool holds = field.type == FieldType::List || field.type == FieldType::Map;
    for (const SchemaField& part : field.fields) collect(part, holds ? &field : nullptr);
  };
  for (const CommandSchema& schema : CommandSchema::all()) {
    for (const SchemaField& field : schema.fields) collect(field, nullptr);
  }
  EXPECT_EQ(named["seat"], (std::set<std::string>{"bets/key", "dealerSeat", "killSeat", "ownSeat", "prevSeatID",
                                                  "seatID", "seats/", "turnSeat", "wins/key"}));
  EXPECT_EQ(named["game_id"], (std::set<std::string>{"gameID", "games/", "oldGameID", "ownTable", "removedTables/",
                                                     "removedTournaments/", "requestedTable", "subscribedTable",
                                                     "table", "tableID", "tourID", "tournamentID", "tournamentId"}));
}

}  // namespace
}  // namespace poker::test

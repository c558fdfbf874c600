// The records here are this program's: a compiler for Windows must not look for them in the DLL.
#define COMMANDPROCESSOR_STATIC

#include <CommandProcessor/types/DbRecordImpl.h>
#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/types/TourMoneyChooser.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <clocale>
#include <cmath>
#include <limits>

#ifdef CP_HAS_RAPIDCHECK
#include <rapidcheck/gtest.h>
#endif

namespace poker::test {
namespace {

using namespace wire;

struct Row : Record<Row> {
  std::uint8_t seat = 0;
  std::string name;
  static void fields(auto& self, auto&& field) {
    field("seat", self.seat);
    field("name", text<4>(self.name));
  }
};

struct Entry : DbRecord<Entry> {
  std::uint64_t big = UINT64_MAX;
  std::int64_t small = INT64_MIN;
  std::int32_t number = -7;
  std::int8_t level = 3;
  double ratio = 0.1;
  COleDateTime day{44250.25};
  COleDateTime stamp{-0.0, COleDateTime::null};
  std::string text = "a\"\\\n\x7F\x80\xFF";
  std::array<std::uint8_t, 3> raw{0x00, 0xFF, 0x7A};
  bool chat = true;
  std::vector<Row> rows = std::vector<Row>(1);
  FlatMap<std::int32_t, std::string> news{{-1, "x"}};
  TourMoneyChooser chooser{RealMoneyType::fromHundredths(1250), RealMoneyType::fromHundredths(-5), false};
  std::string password = "secret";

  static void fields(auto& self, auto&& field) {
    field("big", self.big);
    field("small", self.small);
    auto rows = counted<std::uint8_t>(self.rows);
    field("number", self.number);
    field("level", as<std::int32_t>(self.level));
    field("rowCount", rows.count());
    field("ratio", self.ratio);
    field("day", self.day);
    field("stamp", dateTimeStatus(self.stamp));
    field("text", self.text);
    field("raw", self.raw);
    field("flags", flags(bit<1>("chat", self.chat)));
    field.zeros(3);
    field("rows", rows);
    field("news", map<std::uint16_t>(self.news));
    field("moneyChooser", self.chooser);
    field("password", secret(self.password));
  }
};

constexpr auto kJson =
    R"({"big":"18446744073709551615","small":"-9223372036854775808","number":-7,"level":3,"ratio":0.1,"day":44250.25,)"
    R"("stamp":{"date":-0.0,"status":2},"text":"a\"\\\u000A\u007F\u0080\u00FF","raw":"00FF7A","flags":{"chat":true},)"
    R"("rows":[{"seat":0,"name":""}],"news":[{"key":-1,"value":"x"}],)"
    R"("moneyChooser":{"first":"12.50","second":"-0.05","chosen":false},"password":"secret"})";

TEST(FieldJson, HasTheDocumentedForm) {
  const Entry entry;
  EXPECT_EQ(fieldsToJson(entry, JsonSecrets::kShow), kJson);
  std::string masked = kJson;
  masked.replace(masked.find("secret"), 6, "***");
  EXPECT_EQ(fieldsToJson(entry), masked);
}

std::string replaced(std::string text, std::string_view part, std::string_view by) {
  const auto place = text.find(part);
  EXPECT_NE(place, std::string::npos) << part;
  return text.replace(place, part.size(), by);
}

/// The error of kJson with one part replaced; "" when it is taken.
std::string errorWith(std::string_view part, std::string_view by) {
  Entry entry;
  try {
    fieldsFromJson(entry, replaced(kJson, part, by));
    return "";
  } catch (const FieldValueError& error) {
    return error.what();
  }
}

TEST(FieldJson, TakesWhatOthersWriteInOtherWays) {
  for (const auto& [part, by] : std::initializer_list<std::pair<const char*, const char*>>{
           {"\"18446744073709551615\"", "18446744073709551615"},
           {"\"-9223372036854775808\"", "-9223372036854775808"},
           {"44250.25", "\"0x40E59B4800000000\""},
           {"44250.25", "44250"},
           {"00FF7A", "00ff7a"},
           {"\\u007F\\u0080\\u00FF", "\x7F\xC2\x80\xC3\xBF"},
           {"\"12.50\"", "\"12.5\""},
           {"\"12.50\"", "\"92233720368547758.07\""},
           {"{\"big\":\"18446744073709551615\",\"small\":\"-9223372036854775808\"",  // any order
            " { \"small\" : \"-9223372036854775808\", \"big\":\"18446744073709551615\""}}) {
    EXPECT_EQ(errorWith(part, by), "") << by;
  }
}

TEST(FieldJson, RefusesWhatIsWrongAndTellsWhere) {
  const struct {
    const char* part;
    const char* by;
    const char* error;
  } cases[] = {
      {"\"number\":-7,", "", "number: is missing"},
      {"\"number\"", "\"colour\":1,\"number\"", "colour: there is no such field"},
      {"\"first\"", "\"empty\":false,\"first\"", "moneyChooser.empty: there is no such field"},
      {"\"first\":\"12.50\",", "", "moneyChooser.first: is missing"},
      {"-7", "2147483648", "number: 2147483648 is out of range for i32"},
      {"-7", "18446744073709551615", "number: 18446744073709551615 is out of range for i32"},
      {"-7", "-7.0", "number: takes a whole number"},
      {"-7", "\"7\"", "number: takes a whole number"},
      {"\"18446744073709551615\"", "-1", "big: -1 is out of range for u64"},
      {"18446744073709551615", "18446744073709551616", "big: is no decimal number of 64 bits"},
      {"18446744073709551615", "-1", "big: is no decimal number of 64 bits"},
      {"18446744073709551615", " 1", "big: is no decimal number of 64 bits"},
      {"\"18446744073709551615\"", "1.0", "big: takes a string of decimal digits"},
      {"\"-9223372036854775808\"", "9223372036854775808", "small: 9223372036854775808 is out of range for i64"},
      {"\"seat\":0", "\"seat\":256", "rows[0].seat: 256 is out of range for byte"},
      {"\"seat\":0", "\"seat\":-1", "rows[0].seat: -1 is out of range for byte"},
      {"\"name\":\"\"", "\"name\":\"12345\"", "rows[0].name: has room for 4 characters"},
      {"\"name\":\"\"", "\"name\":\"\\u0000\"", "rows[0].name: a string cannot hold a NUL"},
      {"\"level\":3", "\"level\":128", "level: is out of range"},  // is held in 8 bits
      {"00FF7A", "00FF", "raw: takes exactly 3 bytes"},
      {"\\u00FF", "\\u0100", "text: holds a character above U+00FF"},
      {"00FF7A", "00FF7", "raw: takes a string of hexadecimal digits, two a byte"},
      {"00FF7A", "00FF-1", "raw: takes a string of hexadecimal digits, two a byte"},
      {"44250.25", "\"44250.25\"", "day: takes a number, or its 16 hexadecimal digits after \"0x\""},
      {"44250.25", "\"0x40E59B480000000G\"", "day: takes a number, or its 16 hexadecimal digits after \"0x\""},
      {"\"status\":2", "\"status\":null", "stamp.status: takes a whole number"},
      {"{\"chat\":true}", "2", "flags: takes an object"},
      {"\"chat\":true", "\"chat\":1", "flags.chat: takes true or false"},
      {"[{\"seat\":0,\"name\":\"\"}]", "{}", "rows: takes an array"},
      {"\"key\":-1,", "", "news[0].key: is missing"},
      {"\"value\":\"x\"", "\"value\":\"x\",\"more\":1", "news[0].more: there is no such field"},
      {"{\"key\":-1,\"value\":\"x\"}", "7", "news[0]: takes an object"},
      {"\"12.50\"", "12.5", "moneyChooser.first: takes money as a string: \"12.50\""},
      {"\"secret\"", "\"***\"", "password: the secret is masked by \"***\"; decode with secrets shown"},
      {"\"password\"", "\"text\"", "JSON: text: stands twice"},
  };
  for (const auto& c : cases) EXPECT_EQ(errorWith(c.part, c.by), c.error);
  // A count that stands apart: only the list itself can say that there is too much.
  std::string crowd = "[";
  for (int i = 0; i < 256; ++i) crowd += R"({"seat":0,"name":""},)";
  crowd.back() = ']';
  EXPECT_EQ(errorWith(R"([{"seat":0,"name":""}])", crowd), "rows: too many elements for their count");
  for (const char* money : {"", "-", "$1", "1,50", "1.", ".5", "1.234", "+1", " 1", "1 ", "1e3", "1.-5", "--1", "0x10",
                            "92233720368547758.08", "-92233720368547758.09", "99999999999999999999"}) {
    EXPECT_EQ(errorWith("12.50", money), "moneyChooser.first: is no money text") << money;
  }
  Entry entry;
  for (const auto& [json, error] : std::initializer_list<std::pair<const char*, const char*>>{
           {"", "JSON: syntax error at byte 1"},
           {"{\"big\":1}}", "JSON: syntax error at byte 10"},
           {"{\"big\":\"\xFF\"}", "JSON: syntax error at byte 9"},
           {"{\"big\":1e999}", "JSON: a number is beyond what a double can hold"},
           {"[]", "JSON: takes an object"}}) {
    try {
      fieldsFromJson(entry, json);
      ADD_FAILURE() << json;
    } catch (const FieldValueError& refused) {
      EXPECT_STREQ(refused.what(), error);
    }
  }
  fieldsFromJson(entry, replaced(kJson, "secret", "***"), JsonSecrets::kShow);
  EXPECT_EQ(entry.password, "***");
}

struct Reals : Record<Reals> {
  double real = 0;
  COleDateTime date;
  static void fields(auto& self, auto&& field) {
    field("real", self.real);
    field("date", self.date);
  }
};

void expectBitsKept(std::uint64_t bits) {
  Reals reals;
  reals.real = std::bit_cast<double>(bits);
  reals.date = COleDateTime::fromBits(bits, COleDateTime::valid);
  const std::string json = fieldsToJson(reals);
  Reals read;
  fieldsFromJson(read, json);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(read.real), bits);
  EXPECT_EQ(read.date.bits(), bits);
  EXPECT_EQ(json.find("0x") == std::string::npos, std::isfinite(reals.real)) << json;
}

TEST(FieldJson, KeepsEveryDoubleBitForBit) {
  for (const double odd :
       {0.0, -0.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::denorm_min(),
        std::numeric_limits<double>::max(), 9007199254740993.0, 18446744073709551616.0, 1e22}) {
    expectBitsKept(std::bit_cast<std::uint64_t>(odd));
  }
  expectBitsKept(0x7FF0000000000001);  // a signalling NaN
}

#ifdef CP_HAS_RAPIDCHECK
RC_GTEST_PROP(FieldJson, KeepsAnyDoubleBitForBit, ()) {
  expectBitsKept(*rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<std::uint64_t>()));
  expectBitsKept(std::bit_cast<std::uint64_t>(static_cast<double>(*rc::gen::arbitrary<int>()) / 4));
}
#endif

TEST(FieldJson, DoesNotFollowTheLocalesComma) {
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8"}) {
    if (std::setlocale(LC_ALL, name) != nullptr) break;
  }
  Entry entry;
  EXPECT_EQ(fieldsToJson(entry, JsonSecrets::kShow), kJson);
  fieldsFromJson(entry, kJson);
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(entry.ratio, 0.1);
}

TEST(DbRecord, ReadsBackItsTextOrStaysAsItWas) {
  Entry entry;
  entry.number = 42;
  entry.password = "***";
  entry.rows.clear();
  const DbSerializableI& stored = entry;
  const std::string text = stored.toDbText();
  Entry read;
  read.fromDbText(text);
  EXPECT_EQ(read.toDbText(), text);
  EXPECT_EQ(read.password, "***");
  EXPECT_EQ(toHex(encode(read)), toHex(encode(entry)));

  for (const std::string& bad : {std::string(), text.substr(0, text.size() / 2), replaced(text, "\"chosen\"", "\"c\""),
                                 replaced(text, "\"***\"", "7"), std::string("null")}) {
    try {
      read.fromDbText(bad);
      ADD_FAILURE() << bad;
    } catch (const DbTextError& error) {
      EXPECT_STRNE(error.what(), "");
    }
    EXPECT_EQ(read.toDbText(), text) << "half of a bad text stayed: " << bad;
  }
}

}  // namespace
}  // namespace poker::test

// Every line of tests/golden/values/*.txt in both directions, as GoldenTest does for the commands.

#include <CommandProcessor/types/CardVector.h>
#include <CommandProcessor/types/CommonTypes.h>
#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/types/NextTurnOptions.h>
#include <CommandProcessor/types/Pot.h>
#include <CommandProcessor/types/SeatIDSet.h>
#include <CommandProcessor/types/TourMoneyChooser.h>
#include <CommandProcessor/types/UserCardsInfoVector.h>
#include <CommandProcessor/wire/Int2StringSer.h>
#include <CommandProcessor/wire/RawDataHolder.h>
#include <CommandProcessor/wire/String2String.h>
#include <CommandProcessor/wire/StringList.h>
#include <CommandProcessor/wire/StringVector.h>
#include <tests/support/Golden.h>
#include <tests/support/WireBytes.h>

#include <functional>
#include <map>
#include <string>

namespace poker::test {
namespace {

template <class T>
void checkValue(const GoldenLine& line) {
  const std::vector<std::uint8_t> expected = bytesOf(line.hex);
  T written, read;
  fieldsFromJson(written, line.json, JsonSecrets::kShow);
  SerializeCommandBuf buf(4);
  written.serialize(buf);
  EXPECT_EQ(toHex({buf.data() + 4, buf.data() + buf.used()}), toHex(expected));
  DeserializeCommandBuf in(expected.data(), static_cast<std::uint32_t>(expected.size()));
  read.deserialize(in);
  EXPECT_EQ(in.remaining(), 0u);
  EXPECT_EQ(fieldsToJson(read, JsonSecrets::kShow), fieldsToJson(written, JsonSecrets::kShow));
}

const std::map<std::string, std::function<void(const GoldenLine&)>> kTypes = {
    {"String2String", checkValue<String2String>},
    {"Int2StringSer", checkValue<Int2StringSer>},
    {"RawDataHolder", checkValue<RawDataHolder>},
    {"StringVector", checkValue<StringVector>},
    {"StringList", checkValue<StringList>},
    {"TourMoneyChooser", checkValue<TourMoneyChooser>},
    {"CardVector", checkValue<CardVector>},
    {"SeatIDSet", checkValue<SeatIDSet>},
    {"UserCardsInfoVector", checkValue<UserCardsInfoVector>},
    {"NextTurnOptions", checkValue<NextTurnOptions>},
    {"Pot", checkValue<Pot>},
    {"HardwareInfo", checkValue<CommonTypes::HardwareInfo>},
};

TEST(GoldenValues, BytesAndValuesAgreeBothWays) {
  std::map<std::string, int> lines;
  for (const GoldenLine& line : goldenLines(std::string(CP_TEST_DATA_DIR) + "/values")) {
    SCOPED_TRACE(line.where + " " + line.name);
    const auto type = kTypes.find(line.name);
    ASSERT_NE(type, kTypes.end());
    type->second(line);
    ++lines[line.name];
  }
  EXPECT_EQ(lines.size(), kTypes.size()) << "a type is without golden bytes";
}

}  // namespace
}  // namespace poker::test

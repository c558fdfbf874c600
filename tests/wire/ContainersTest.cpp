#include <CommandProcessor/wire/Int2StringSer.h>
#include <CommandProcessor/wire/RawDataHolder.h>
#include <CommandProcessor/wire/String2String.h>
#include <CommandProcessor/wire/StringList.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

// How containers travel in general is tested with the other records (HardRecords.h).

namespace poker::test {
namespace {

TEST(Containers, AreTheirCountAloneWhenEmpty) {
  EXPECT_EQ(toHex(encode(String2String())), "00");
  EXPECT_EQ(toHex(encode(Int2StringSer())), "00");
  for (const auto& bytes : {encode(RawDataHolder()), encode(StringVector()), encode(StringList())}) {
    EXPECT_EQ(toHex(bytes), "00 00 00 00");
  }
}

TEST(Containers, MapsTravelWholeUpTo255Entries) {
  String2String map;
  for (int i = 0; i < 255; ++i) map.set("key" + std::to_string(i), std::to_string(i));
  EXPECT_TRUE(map.fitsOnWire());
  String2String read;
  ASSERT_EQ(decode(read, encode(map)), "");
  EXPECT_EQ(read, map);
  map.set("one more", "");
  EXPECT_FALSE(map.fitsOnWire());
  EXPECT_EQ(encode(map)[0], 0) << "the count's low 8 bits travel";
}

TEST(Containers, StringListRejectsItsCapBeforeAnythingElse) {
  StringList list;
  EXPECT_EQ(decode(list, hex("41 42 0F 00")), "StringList::deserialize more then 1000000");
  EXPECT_EQ(decode(list, hex("FF FF FF FF")), "StringList::deserialize more then 1000000");
  EXPECT_EQ(decode(list, hex("40 42 0F 00")), kStringFails);
  Bytes million = hex("40 42 0F 00");
  million.resize(million.size() + 1000000);
  ASSERT_EQ(decode(list, million), "");
  EXPECT_TRUE(list.fitsOnWire());
  list.push_back("");
  EXPECT_FALSE(list.fitsOnWire());
}

}  // namespace
}  // namespace poker::test

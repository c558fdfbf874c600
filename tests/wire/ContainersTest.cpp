#include <CommandProcessor/wire/String2String.h>
#include <CommandProcessor/wire/StringList.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

// How containers travel in general is tested with the other records (HardRecords.h), and their bytes are golden.

namespace poker::test {
namespace {

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

#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/types/TourMoneyChooser.h>
#include <tests/support/AllocationCounter.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace poker::test {
namespace {

template <class Buf, class T>
concept Writes = requires(Buf& buf, T value) {
  buf.write(value);
};
enum Loose { kLoose };
static_assert(!Writes<SerializeCommandBuf, int*> && !Writes<SerializeCommandBuf, Loose> &&
                  !Writes<SerializeCommandBuf, float>,
              "a value of no wire width turns into a bool");

TEST(WireNumber, IsLittleEndianOnEveryMachine) {
  std::uint8_t bytes[8];
  wire::storeLittleEndian(bytes, std::uint64_t{0x0102030405060708});
  EXPECT_EQ(toHex({bytes, bytes + 8}), "08 07 06 05 04 03 02 01");
  EXPECT_EQ(wire::loadLittleEndian<std::uint64_t>(bytes), 0x0102030405060708u);
  EXPECT_EQ(wire::loadLittleEndian<std::int16_t>(bytes), 0x0708);
  wire::storeLittleEndian(bytes, std::int32_t{-2});
  EXPECT_EQ(toHex({bytes, bytes + 4}), "FE FF FF FF");
  wire::storeLittleEndian(bytes, -1.5);
  EXPECT_EQ(toHex({bytes, bytes + 8}), "00 00 00 00 00 00 F8 BF");
  EXPECT_EQ(wire::loadLittleEndian<double>(bytes), -1.5);
}

TEST(Writer, WritesEveryKindInAChain) {
  SerializeCommandBuf buf(64);
  const std::string text = "ab";
  const char* absent = nullptr;
  buf << std::uint8_t{128} << 'A' << true << false << std::int16_t{-2} << std::uint32_t{5} << std::int64_t{-1} << 1.0
      << text << "" << absent;
  buf.append("\xFF", 1);
  EXPECT_EQ(toHex(written(buf)),
            "80 41 01 00 FE FF 05 00 00 00 FF FF FF FF FF FF FF FF 00 00 00 00 00 00 F0 3F 61 62 00 00 20 00 FF");
}

TEST(Buffers, ChainValuesThatAreMoreThanNumbers) {
  enum Code : std::uint16_t { kCode = 0x0102 };
  SerializeCommandBuf out(64);
  out << kCode << RealMoneyType::fromHundredths(-50) << COleDateTime(2.5, COleDateTime::null)
      << TourMoneyChooser(RealMoneyType(), RealMoneyType(), false) << "fifty";
  EXPECT_EQ(toHex(written(out)), "02 01 CE FF FF FF FF FF FF FF 00 00 00 00 00 00 04 40 01 66 69 66 74 79 00");

  DeserializeCommandBuf in(out.data() + 4, out.used() - 4);
  Code code;
  RealMoneyType money;
  COleDateTime date;
  TourMoneyChooser chooser(money, money, false);
  char text[6];
  in >> code >> money >> date >> chooser >> text;
  EXPECT_EQ(code, kCode);
  EXPECT_EQ(money.hundredths(), -50);
  EXPECT_EQ(date.days(), 2.5);
  EXPECT_EQ(date.GetStatus(), COleDateTime::valid);
  EXPECT_TRUE(chooser.chosen());
  EXPECT_STREQ(text, "fifty");
}

TEST(Writer, CutsTextAtAnEmbeddedNul) {
  SerializeCommandBuf buf(16);
  buf.write(std::string_view("a\0b", 3));
  buf.write(std::string_view("\0", 1));
  EXPECT_EQ(toHex(written(buf)), "61 00 00");
}

TEST(Writer, GrowsByItsInitialSizePlusTheRequest) {
  SerializeCommandBuf buf(4);
  EXPECT_EQ(buf.used(), 4u);
  EXPECT_EQ(buf.capacity(), 4u);
  buf.append("0123456789", 10);
  EXPECT_EQ(buf.capacity(), 18u);
  buf.append("0123", 4);  // fits exactly
  EXPECT_EQ(buf.capacity(), 18u);
  buf.write(std::uint8_t{1});
  EXPECT_EQ(buf.capacity(), 18u + 4 + 1);
  buf.write("");
  buf.append(nullptr, 0);
  EXPECT_EQ(buf.used(), 20u);
  EXPECT_EQ(std::memcmp(buf.data() + 4, "01234567890123\1\0", 16), 0) << "growth lost bytes";

  SerializeCommandBuf tiny(0);
  EXPECT_EQ(tiny.capacity(), 4u);
}

TEST(Writer, FinishesOverwritesAndStartsOver) {
  SerializeCommandBuf buf(32);
  std::uint32_t size = 0;
  EXPECT_EQ(toHex({buf.finish(size), buf.data() + size}), "04 00 00 00");
  buf << std::uint8_t{128} << std::uint8_t{2} << std::uint32_t{5};
  EXPECT_EQ(toHex({buf.finish(size), buf.data() + size}), "0A 00 00 00 80 02 05 00 00 00");

  buf.overwrite("\7\7", 2, 8);
  buf.overwrite("\11\11", 2, 9);        // one byte beyond what is written
  buf.overwrite("\11", 1, UINT32_MAX);  // offset + count wraps
  buf.overwrite("\11\11", UINT32_MAX, 2);
  EXPECT_EQ(toHex({buf.data(), buf.data() + 10}), "0A 00 00 00 80 02 05 00 07 07");

  buf.setMark();
  buf.reset();
  EXPECT_FALSE(buf.mark());
  EXPECT_EQ(toHex({buf.finish(size), buf.data() + size}), "04 00 00 00") << "the length of the earlier command stayed";
}

TEST(Writer, HandsItsArrayOutAndTakesAnother) {
  SerializeCommandBuf buf(8);
  buf.setMark();
  buf.append("abcdef", 6);
  std::uint32_t capacity = 0;
  auto array = buf.detach(capacity);
  EXPECT_EQ(capacity, 8u + 8 + 6) << "the bytes written come from finish()";
  EXPECT_EQ(std::memcmp(array.get() + 4, "abcdef", 6), 0);
  EXPECT_EQ(buf.used(), 0u);
  EXPECT_EQ(buf.capacity(), 8u);
  EXPECT_TRUE(buf.mark());

  buf.attach(std::move(array), capacity);
  EXPECT_EQ(buf.used(), 0u);
  EXPECT_EQ(buf.capacity(), capacity);
  std::uint32_t size = 99;
  buf.finish(size);  // there is no length slot to write into
  EXPECT_EQ(size, 0u);
  buf.append(std::string(23, 'x').data(), 23);
  EXPECT_EQ(buf.capacity(), capacity + 8 + 23) << "the growth step stays the first size";
}

TEST(Reader, ReadsWhatTheWriterWrote) {
  const Bytes bytes = hex("80 02 FE FF 05 00 00 00 61 00 00 20 00 41 42 00");
  DeserializeCommandBuf in(bytes.data(), 16);
  std::uint8_t byte = 0;
  bool flag = false;
  std::int16_t narrow = 0;
  std::uint32_t number = 0;
  std::string text, empty = "old", blank;
  in >> byte >> flag >> narrow >> number >> text >> empty >> blank;
  EXPECT_EQ(byte, 128);
  EXPECT_TRUE(flag) << "any byte but 0 is true";
  EXPECT_EQ(narrow, -2);
  EXPECT_EQ(number, 5u);
  EXPECT_EQ(text + '|' + empty + '|' + blank, "a|| ");
  EXPECT_EQ(in.getFieldLen(), 2u);
  char storage[3];
  in.readString(storage, 3);
  EXPECT_STREQ(storage, "AB");
  EXPECT_EQ(in.position(), 16u);
  EXPECT_EQ(in.remaining(), 0u);
}

TEST(Reader, FailsWithoutMoving) {
  const auto check = [](const Bytes& bytes, const char* message, auto&& read) {
    DeserializeCommandBuf in(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    EXPECT_EQ(messageOf([&] { read(in); }), message) << toHex(bytes);
    EXPECT_EQ(in.position(), 0u);
    EXPECT_EQ(in.remaining(), bytes.size());
  };
  std::uint32_t number = 0;
  std::string text;
  bool flag = false;
  char storage[51];
  check(hex("01 02 03"), kNumberFails, [&](auto& in) { in >> number; });
  check({}, kNumberFails, [&](auto& in) { in >> flag; });
  check(hex("01 02"), kNumberFails, [&](auto& in) { in.readNumber(storage, 3); });
  check(hex("01 02"), kNumberFails, [&](auto& in) { in.skip(UINT32_MAX); });
  check(hex("61 62 63"), kLengthFails, [&](auto& in) { in >> text; });
  check({}, kLengthFails, [&](auto& in) { in.getFieldLen(); });
  check({}, kStringFails, [&](auto& in) { in >> text; });
  check({}, kTextFails, [&](auto& in) { in.readString(storage, 51); });
  check(hex("61 62 63"), kLengthFails, [&](auto& in) { in.readString(storage, 51); });
  Bytes longText(51, 'x');
  longText.push_back(0);
  check(longText, kTextFails, [&](auto& in) { in.readString(storage, 51); });
  longText.erase(longText.begin());
  DeserializeCommandBuf in(longText.data(), 51);
  in.readString(storage, 51);
  EXPECT_EQ(std::string(storage), std::string(50, 'x'));
}

TEST(Buffers, CarryEveryDoubleBitForBit) {
  for (const std::uint64_t bits :
       {0x7FF0000000000001u, 0xFFF8000000000123u, 0x7FF0000000000000u, 0x8000000000000000u}) {
    SerializeCommandBuf buf(16);
    double value = std::bit_cast<double>(bits);
    buf << value;
    DeserializeCommandBuf in(buf.data() + 4, 8);
    in >> value;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), bits);
  }
}

TEST(Buffers, AllocateNothingWhenReused) {
  SerializeCommandBuf buf(64);
  std::string text;
  const auto turn = [&] {
    buf.reset();
    buf << std::uint32_t{1} << "a text that no short string holds" << true;
    DeserializeCommandBuf in(buf.data() + 8, buf.used() - 8);
    in >> text;
  };
  turn();
  const auto* const data = buf.data();
  const AllocationCounter allocations;
  for (int i = 0; i < 100; ++i) turn();
  EXPECT_EQ(allocations.calls(), 0u);
  EXPECT_EQ(buf.data(), data);
}

}  // namespace
}  // namespace poker::test

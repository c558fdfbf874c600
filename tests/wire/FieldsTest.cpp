#include <CommandProcessor/types/FieldJson.h>
#include <tests/support/AllocationCounter.h>
#include <tests/support/WireBytes.h>

#include "HardRecords.h"

#include <gtest/gtest.h>

#include <random>

namespace poker::test {
namespace {

template <class T>
std::string shown(const T& record) {
  return fieldsToJson(record, JsonSecrets::kShow);
}

/// Sets every field to something, often to an end of its range.
class RandomFields : public FieldVisitor {
 public:
  explicit RandomFields(std::uint64_t seed) : random_(seed) {}

  void number(const Field& field, std::int64_t& value) override {
    // Byte, Bool, U16, I16, U32, I32; all others have 64 bits.
    constexpr int kUnusedBits[] = {56, 63, 48, 48, 32, 32};
    const auto type = static_cast<std::size_t>(field.type);
    const int unused = type < std::size(kUnusedBits) ? kUnusedBits[type] : 0;
    const bool isSigned = field.type == FieldType::I16 || field.type == FieldType::I32;
    const std::uint64_t bits = below(4) != 0 ? random_() : std::uint64_t{0} - below(2);
    value = isSigned ? static_cast<std::int64_t>(bits) >> unused : static_cast<std::int64_t>(bits >> unused);
    // Held narrower than they travel; and a mask that has few bits.
    if (field.name == "size") value = static_cast<std::uint8_t>(bits);
    if (field.name == "level") value = static_cast<std::int8_t>(bits);
    if (field.name == "mask") value = static_cast<std::int64_t>(below(0x200));
  }
  void real(const Field&, double& value) override { value = std::bit_cast<double>(random_()); }
  void text(const Field&, std::string& value) override {
    value.clear();
    for (std::size_t i = below(20); i-- > 0;) value += static_cast<char>(1 + below(255));
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    value.resize(field.size != 0 ? field.size : below(9));
    for (auto& byte : value) byte = static_cast<std::uint8_t>(random_());
  }
  void beginRecord(const Field&) override {}
  void endRecord(const Field&) override {}
  std::size_t beginList(const Field&, std::size_t) override { return below(4); }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field&, std::size_t) override { return below(4); }
  void endMap(const Field&) override {}

 private:
  std::size_t below(std::size_t end) { return static_cast<std::size_t>(random_() % end); }

  std::mt19937_64 random_;
};

template <class T>
T randomRecord(std::uint64_t seed) {
  T record;
  RandomFields ignored(seed), random(seed);
  record.visitFields(ignored);
  EXPECT_EQ(encode(record), encode(T())) << "a walk that only looks changed the record";
  record.assignFields(random);
  return record;
}

/// Reads as a DeserializeCommandBuf and notices when a read that fails moves the position.
class WatchedReader {
 public:
  explicit WatchedReader(DeserializeCommandBuf& in) : in_(in) {}
  bool movedOnFailure = false;

  void read(auto& value) {
    watch([&] { in_.read(value); });
  }
  void readString(std::string& text) {
    watch([&] { in_.readString(text); });
  }
  void readString(char* storage, std::uint32_t capacity) {
    watch([&] { in_.readString(storage, capacity); });
  }
  void readNumber(void* to, std::uint32_t width) {
    watch([&] { in_.readNumber(to, width); });
  }
  void skip(std::uint32_t width) {
    watch([&] { in_.skip(width); });
  }
  void require(std::uint32_t width) { in_.require(width); }
  std::uint32_t remaining() const { return in_.remaining(); }

 private:
  void watch(auto&& read) {
    const std::uint32_t before = in_.position();
    try {
      read();
    } catch (CommandDeserializeException*) {
      movedOnFailure = movedOnFailure || in_.position() != before;
      throw;
    }
  }
  DeserializeCommandBuf& in_;
};

template <class T>
class HardRecord : public ::testing::Test {
 protected:
  const Bytes bytes_ = hex(T::kBytes);
};
using HardRecords = ::testing::Types<Numbers, TwoLists, Masked, Presence, Flagged, Prizes, Blocks, Maps, Containers>;
TYPED_TEST_SUITE(HardRecord, HardRecords);

TYPED_TEST(HardRecord, IsWrittenAsTheFormatSaysAndWithoutAllocation) {
  const TypeParam record;
  SerializeCommandBuf buf(512);
  const AllocationCounter allocations;
  record.serialize(buf);
  EXPECT_EQ(allocations.calls(), 0u);
  EXPECT_EQ(toHex(written(buf)), toHex(this->bytes_));
}

TYPED_TEST(HardRecord, KeepsNothingOfItsEarlierUse) {
  TypeParam fresh{};
  ASSERT_EQ(decode(fresh, this->bytes_), "");
  EXPECT_EQ(encode(fresh), this->bytes_);
  for (std::uint64_t seed = 0; seed < 50; ++seed) {
    auto used = randomRecord<TypeParam>(seed);
    const Bytes other = encode(used);
    ASSERT_EQ(decode(used, this->bytes_), "");
    EXPECT_EQ(shown(used), shown(fresh)) << seed;
    // And with whatever the random one leaves out on the wire.
    TypeParam otherFresh{};
    ASSERT_EQ(decode(otherFresh, other), "");
    ASSERT_EQ(decode(used, other), "");
    EXPECT_EQ(shown(used), shown(otherFresh)) << seed;
  }
}

TYPED_TEST(HardRecord, RandomValuesSurviveWireAndJson) {
  for (std::uint64_t seed = 0; seed < 200; ++seed) {
    const auto record = randomRecord<TypeParam>(seed);
    const Bytes bytes = encode(record);
    TypeParam read{};
    ASSERT_EQ(decode(read, bytes), "") << toHex(bytes);
    EXPECT_EQ(encode(read), bytes);
    TypeParam parsed{};
    fieldsFromJson(parsed, shown(record), JsonSecrets::kShow);
    EXPECT_EQ(shown(parsed), shown(record));
    EXPECT_EQ(encode(parsed), bytes);
  }
}

TYPED_TEST(HardRecord, EveryCutFailsWithAKnownMessageAndTheReadThatFailsMovesNothing) {
  for (std::uint32_t size = 0; size < this->bytes_.size(); ++size) {
    // A block of its own, so that a sanitizer sees a read beyond it.
    const Bytes cut(this->bytes_.begin(), this->bytes_.begin() + size);
    DeserializeCommandBuf in(cut.data(), size);
    WatchedReader watched(in);
    TypeParam record{};
    const std::string message = messageOf([&] { RecordCodec<TypeParam>(record).read(watched); });
    EXPECT_TRUE(isReadMessage(message)) << size << ": " << message;
    EXPECT_FALSE(watched.movedOnFailure) << size << ": " << message;
    EXPECT_EQ(in.position() + in.remaining(), size);
  }
}

TYPED_TEST(HardRecord, DamageFailsWithAKnownMessageAndCostsLittleMemory) {
  const auto attack = [](const Bytes& frame) {
    const AllocationCounter allocations;
    std::string message;
    {
      TypeParam record{};
      DeserializeCommandBuf in(frame.data(), static_cast<std::uint32_t>(frame.size()));
      message = messageOf([&] { record.deserialize(in); });
      record.fitsOnWire();
    }
    EXPECT_LE(allocations.peak(), decodeBudget(frame.size())) << toHex(frame);
    EXPECT_TRUE(message.empty() || isReadMessage(message) || message == StringList::kTooManyElements)
        << message << toHex(frame);
  };
  for (const std::uint8_t fill : hex("FF 7F 80 01 00")) {
    for (std::size_t size : {10u, 4096u}) attack(Bytes(size, fill));
    // Wherever a count may stand: far too many elements, the smallest there are.
    for (std::size_t at = 0; at < this->bytes_.size(); ++at) {
      Bytes bomb(this->bytes_.begin(), this->bytes_.begin() + static_cast<std::ptrdiff_t>(at));
      bomb.insert(bomb.end(), 4, 0xFF);
      bomb.insert(bomb.end(), 4096, fill);
      attack(bomb);
    }
    for (std::size_t at = 0; at < this->bytes_.size(); ++at) {
      for (const std::size_t width : {1u, 2u, 4u, 8u}) {
        Bytes damaged = this->bytes_;
        for (std::size_t i = at; i < std::min(at + width, damaged.size()); ++i) damaged[i] = fill;
        attack(damaged);
      }
    }
  }
}

TEST(Fields, ReadingAgainAllocatesNothing) {
  const auto check = [](auto record) {
    const Bytes bytes = encode(record);
    for (int i = 0; i < 3; ++i) ASSERT_EQ(decode(record, bytes), "");
    DeserializeCommandBuf in(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    const AllocationCounter allocations;
    record.deserialize(in);
    EXPECT_EQ(allocations.calls(), 0u) << toHex(bytes);
  };
  TwoLists lists;
  lists.names.clear();  // nodes of std containers are new every time
  check(lists);
  Maps maps;
  maps.news.clear();
  maps.seats.clear();
  maps.ids.clear();
  maps.texts.set("a key that no short string holds", "a value that no short string holds");
  maps.players[2].city = "a city that no short string holds";
  check(maps);
  check(Masked());
  check(Flagged());
  check(Blocks());
  check(Presence());
  check(Containers());
}

TEST(Fields, NarrowedAndWidenedNumbersReadBackInTheirOwnWidth) {
  Numbers read{};
  ASSERT_EQ(decode(read, hex(Numbers::kBytes)), "");
  EXPECT_EQ(read.id, 0x5678u);  // only the low bits travel
  EXPECT_EQ(read.level, -2);
  EXPECT_EQ(read.size, 0xFE);
  EXPECT_EQ(read.byteKind, Level::kLow);
  EXPECT_EQ(read.cleared, 0) << "what never travels keeps its earlier value";
}

TEST(Fields, ADateWithItsStatusIsReadWholeOrNotAtAll) {
  const Bytes bytes = encode(Replay());
  DeserializeCommandBuf in(bytes.data(), 11);
  Replay replay;
  EXPECT_EQ(messageOf([&] { replay.deserialize(in); }), kNumberFails);
  EXPECT_EQ(in.position(), 0u);
}

TEST(Fields, AbsentPartsAreLeftAtTheirDefaults) {
  Masked masked;
  ASSERT_EQ(decode(masked, hex("00 00 00 00 01")), "");
  EXPECT_EQ(
      shown(masked),
      R"({"mask":0,"game":0,"day":0,"end":{"date":0,"status":0},"pair":"0000","text":"","replays":[],"closing":true})");
  Presence presence;
  ASSERT_EQ(decode(presence, hex("00 00 07")), "") << "any byte but 0 is true";
  EXPECT_EQ(shown(presence), R"({"valid":false,"amount":"0","bonus":0,"first":"0","seat":100,"chosen":true})");
  EXPECT_EQ(toHex(encode(presence)), "00 00 01");
}

TEST(Fields, EveryFlagsByteReadsAsTheFormatSays) {
  Bytes bytes = hex(Flagged::kBytes);
  for (unsigned byte = 0; byte < 256; ++byte) {
    bytes[0] = bytes[1] = static_cast<std::uint8_t>(byte);
    Flagged read;
    ASSERT_EQ(decode(read, bytes), "");
    EXPECT_EQ(read.moveChips, byte % 16 != 0) << byte;
    EXPECT_EQ(read.showBoxes, byte >= 16) << byte;
    EXPECT_EQ(read.chat, (byte & 4) != 0) << byte;
    EXPECT_EQ(read.mail, (byte & 128) != 0) << byte;
    EXPECT_EQ(encode(read)[0], (byte % 16 != 0 ? 0x0F : 0) | (byte >= 16 ? 0xF0 : 0));
    EXPECT_EQ(encode(read)[1], byte & 0x84);
  }
}

TEST(Fields, BoundedTextHasRoomForFiftyCharacters) {
  Flagged record;
  record.text.push_back('x');
  EXPECT_FALSE(record.fitsOnWire());
  EXPECT_EQ(toHex(encode(record)), toHex(hex(Flagged::kBytes))) << "what cannot be read back is not written";
  Bytes bytes = hex(Flagged::kBytes);
  bytes.insert(bytes.begin() + 10, 'x');
  EXPECT_EQ(decode(record, bytes), kTextFails);
}

TEST(Fields, SignedSizesBelowOneAreNoneOrTooLarge) {
  Blocks blocks;
  for (const char* none : {"00 00 00 00", "FF FF FF FF", "00 00 00 80"}) {
    const std::string rest = " 00 00 00 00  00 00  00 00 00 00 ";
    ASSERT_EQ(decode(blocks, hex(none + rest + none + " 00")), "") << none;
    EXPECT_TRUE(blocks.lenient.empty() && blocks.numbers.empty());
    Prizes prizes;
    ASSERT_EQ(decode(prizes, hex(std::string("01") + none)), "") << none;
    EXPECT_TRUE(prizes.prizes.empty() && prizes.final);
  }
  EXPECT_EQ(decode(blocks, hex("00 00 00 00  FF FF FF FF  00 00 00 00 00 00 00 00 00 00")), kNumberFails);
}

TEST(Fields, RowsWithEqualKeysKeepTheirOrder) {
  Prizes read;
  ASSERT_EQ(decode(read, hex("00  03 00 00 00  01 00 00 00 09 00 00 00 00 00 00 00 00"
                             "  00 00 00 00 06 00 00 00 00 00 00 00 00  01 00 00 00 05 00 00 00 00 00 00 00 00")),
            "");
  std::string kinds;
  for (const auto& [key, row] : read.prizes) kinds += std::to_string(row.kind);
  EXPECT_EQ(kinds, "695");
}

TEST(Fields, AKeyThatComesTwiceKeepsItsLastValue) {
  Maps maps;
  ASSERT_EQ(decode(maps, hex("03 62 00 31 00 61 00 32 00 62 00 33 00  00 00"
                             "  02 00 00 00 07 00 00 00 61 00 07 00 00 00 62 00  00 00 00 00  00 00  02 05 05  00 00")),
            "");
  EXPECT_EQ(maps.texts, (FlatMap<std::string, std::string>{{"a", "2"}, {"b", "3"}}));
  EXPECT_EQ(maps.news, (std::map<std::int32_t, std::string>{{7, "b"}}));
  EXPECT_EQ(maps.seats, (std::set<SeatID>{5}));
}

TEST(Fields, FitsOnWireAsFarAsTheCountCanTell) {
  const auto fits = [](int entries) {
    Maps maps;
    for (int i = 0; i < entries; ++i) maps.texts.set("k" + std::to_string(i), "");
    maps.texts.erase("a");
    maps.texts.erase("b");
    return maps.fitsOnWire();
  };
  EXPECT_TRUE(fits(255));
  EXPECT_FALSE(fits(256));
}

// A bounded text deep inside what a list, a map and rows hold.
struct Holder : Record<Holder> {
  std::vector<Flagged> items;
  FlatMap<std::uint8_t, Flagged> entries;
  std::multimap<std::uint8_t, Flagged> rowsByLast;
  static void fields(auto& self, auto&& field) {
    field("items", list<std::uint8_t>(self.items));
    field("entries", map<std::uint8_t>(self.entries));
    field("rows", rows<std::uint8_t>(self.rowsByLast, &Flagged::last));
  }
};

TEST(Fields, FitsOnWireLooksIntoWhatContainersHold) {
  Flagged tooLong;
  tooLong.text += 'x';
  Holder holder;
  holder.items.resize(2);
  holder.entries[1] = Flagged();
  holder.rowsByLast.emplace(9, Flagged());
  EXPECT_TRUE(holder.fitsOnWire());
  Holder list = holder, map = holder, rows = holder;
  list.items[1] = tooLong;
  map.entries[1] = tooLong;
  rows.rowsByLast.emplace(9, tooLong);
  EXPECT_FALSE(list.fitsOnWire());
  EXPECT_FALSE(map.fitsOnWire());
  EXPECT_FALSE(rows.fitsOnWire());
}

TEST(Fields, WipedSecretsAreGoneFromMemory) {
  Blocks record;
  record.password = "a password that no short string holds";
  const char* const memory = record.password.data();
  SecretWiper wiper;
  FieldAccess::fields(record, wiper);
  EXPECT_TRUE(record.password.empty() && record.lenient.empty());
  EXPECT_EQ(std::string(memory, 37), std::string(37, '\0'));
  EXPECT_FALSE(record.strict.empty());
}

/// Tells what it is shown, with one element in every list and map.
class Describer : public FieldVisitor {
 public:
  std::string text_;

  void number(const Field& field, std::int64_t&) override { tell(field); }
  void real(const Field& field, double&) override { tell(field); }
  void text(const Field& field, std::string&) override { tell(field); }
  void bytes(const Field& field, std::vector<std::uint8_t>&) override { tell(field); }
  void zeros(const Field& field) override { tell(field); }
  void beginRecord(const Field& field) override {
    tell(field);
    text_ += "{ ";
  }
  void endRecord(const Field&) override { text_ += "} "; }
  std::size_t beginList(const Field& field, std::size_t) override {
    tell(field);
    text_ += "[ ";
    return 1;
  }
  void endList(const Field&) override { text_ += "] "; }
  std::size_t beginMap(const Field& field, std::size_t) override { return beginList(field, 0); }
  void endMap(const Field&) override { text_ += "] "; }
  void beginPart(std::string_view when, bool present) override {
    text_ += std::string(present ? "if(" : "unless(").append(when) + " ";
  }
  void endPart() override { text_ += ") "; }

 private:
  void tell(const Field& field) {
    text_ += std::string(field.name) + ':' + std::string(fieldTypeName(field));
    if (field.size != 0) text_ += '/' + std::to_string(field.size);
    if (field.count) text_ += '#' + std::string(fieldTypeName(*field.count));
    if (field.mask != 0) text_ += '&' + std::to_string(field.mask);
    if (field.derived) text_ += '~';
    if (field.secret) text_ += '!';
    text_ += ' ';
  }
};

template <class T>
std::string described(const T& record) {
  Describer describer;
  record.visitFields(describer);
  return describer.text_;
}

TEST(Fields, DescribeThemselvesEvenWhenEmpty) {
  TwoLists lists;
  lists.players.clear();
  lists.names.clear();
  EXPECT_EQ(described(lists),
            "playerCount:u16~ open:bool nameCount:i32~ "
            "players:list [ :test::Player { name:string id:u32 city:string } ] names:list [ :string ] version:u32 ");
  EXPECT_EQ(described(Presence()),
            "valid:bool if(valid is true amount:money ) hasBonus:bool~ if(hasBonus is true bonus:u16 ) "
            "empty:bool~ if(empty is false first:money seat:byte chosen:bool ) ");
  EXPECT_EQ(described(Flagged()),
            "flags:flags/1 { moveChips:bool&15 showBoxes:bool&240 } more:flags/1 { chat:bool&4 mail:bool&128 } "
            "padding:zeros/5 text:string/50 last:byte ");
  Blocks blocks;
  blocks.numbers.clear();
  EXPECT_EQ(
      described(blocks),
      "lenient:bytes#i32! strict:bytes#i32 small:bytes#u16 fixed:bytes/4 numbers:list#i32 [ :i16 ] password:string! ");
  Masked masked;
  masked.mask = 0;
  EXPECT_NE(described(masked).find("unless(mask has 0x20 replays:list#u32 [ :test::Replay "), std::string::npos);
  Maps maps;
  maps.texts.clear();
  EXPECT_EQ(described(maps).substr(0, 44), "texts:map#byte [ key:string value:string ] c");
}

}  // namespace
}  // namespace poker::test

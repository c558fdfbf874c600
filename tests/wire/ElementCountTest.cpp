// How many elements every kind of container takes and shows.

#include <CommandProcessor/types/NextTurnOptions.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/FlatMultimap.h>
#include <CommandProcessor/wire/FlatSet.h>
#include <CommandProcessor/wire/RawDataHolder.h>
#include <CommandProcessor/wire/RecordImpl.h>
#include <CommandProcessor/wire/StringVector.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace poker::test {
namespace {

using namespace wire;

struct Block : Record<Block> {
  std::vector<std::uint8_t> held;
  static void fields(auto& self, auto&& field) { field("held", bytes<std::uint8_t>(self.held)); }
};

/// A sequence or a set with its count in front of it.
template <class C>
struct Listed : Record<Listed<C>> {
  C held;
  static void fields(auto& self, auto&& field) { field("held", list<std::uint8_t>(self.held)); }
};

struct Apart : Record<Apart> {
  std::vector<std::uint16_t> held;
  static void fields(auto& self, auto&& field) {
    auto held = counted<std::uint8_t>(self.held);
    field("count", held.count());
    field("held", held);
  }
};

template <class M>
struct Mapped : Record<Mapped<M>> {
  M held;
  static void fields(auto& self, auto&& field) { field("held", map<std::uint8_t>(self.held)); }
};

struct Row : Record<Row> {
  std::uint16_t key = 0;
  static void fields(auto& self, auto&& field) { field("key", self.key); }
};
template <class M>
struct Keyed : Record<Keyed<M>> {
  M held;
  static void fields(auto& self, auto&& field) { field("held", rows<std::uint8_t>(self.held, &Row::key)); }
};

struct Turn : Record<Turn> {
  NextTurnOptions held;
  static void fields(auto& self, auto&& field) { field("held", self.held); }
};

/// Asks for so many elements, sets them to 1, 2, ... and counts those that it is shown.
class Elements : public FieldVisitor {
 public:
  explicit Elements(std::size_t size) : size_(size) {}
  std::size_t shown = 0;
  std::size_t held = 0;
  std::string values;

  void number(const Field& field, std::int64_t& value) override {
    if (field.name.empty() || field.name == "key") {
      values += std::to_string(value) + ' ';
      value = static_cast<std::int64_t>(++shown);
    }
  }
  void real(const Field&, double&) override {}
  void text(const Field&, std::string&) override {}
  void bytes(const Field&, std::vector<std::uint8_t>& value) override {
    held = value.size();
    value.resize(size_);
  }
  void beginRecord(const Field&) override {}
  void endRecord(const Field&) override {}
  std::size_t beginList(const Field&, std::size_t size) override {
    held = size;
    return size_;
  }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field&, std::size_t size) override {
    held = size;
    return size_;
  }
  void endMap(const Field&) override {}

 private:
  std::size_t size_;
};

template <class T>
class ElementCount : public ::testing::Test {};
using Containers =
    ::testing::Types<Block, Listed<std::vector<std::uint16_t>>, Listed<std::set<std::uint16_t>>,
                     Listed<FlatSet<std::uint16_t>>, Apart, Mapped<std::map<std::uint16_t, std::uint8_t>>,
                     Mapped<FlatMap<std::uint16_t, std::uint8_t>>, Keyed<std::multimap<std::uint16_t, Row>>,
                     Keyed<FlatMultimap<std::uint16_t, Row>>, Turn>;
TYPED_TEST_SUITE(ElementCount, Containers);

TYPED_TEST(ElementCount, IsWhatTheCountCanTellAndNoMore) {
  TypeParam record, read;
  Elements most(255), tooMany(256), look(0);
  record.assignFields(most);
  EXPECT_TRUE(record.fitsOnWire());
  ASSERT_EQ(decode(read, encode(record)), "");
  EXPECT_EQ(encode(read), encode(record));
  read.visitFields(look);
  EXPECT_EQ(look.held, 255u);
  EXPECT_THROW(record.assignFields(tooMany), FieldValueError);
}

TYPED_TEST(ElementCount, IsTheVisitorsChoice) {
  if constexpr (!std::is_same_v<TypeParam, Block>) {
    TypeParam record;
    Elements three(3);
    record.assignFields(three);
    const Bytes before = encode(record);
    for (const auto& [size, values] :
         {std::pair(0u, ""), std::pair(2u, "1 2 "), std::pair(3u, "1 2 3 "), std::pair(5u, "1 2 3 0 0 ")}) {
      Elements look(size);
      record.visitFields(look);
      EXPECT_EQ(look.values, values);
      EXPECT_EQ(encode(record), before) << "a walk that only looks changed the record";
    }
    Elements none(0);
    record.assignFields(none);
    EXPECT_EQ(encode(record), encode(TypeParam()));
  }
}

struct Nothing : Record<Nothing> {
  static void fields(auto&, auto&&) {}
};
/// Elements that take no byte, or no more than their count.
struct Sparse : Record<Sparse> {
  std::vector<Nothing> nothings;
  std::vector<Apart> aparts;
  FlatMultimap<std::uint16_t, Row> rowsOnDemand;
  static void fields(auto& self, auto&& field) {
    field("nothings", list<std::uint8_t>(self.nothings));
    field("aparts", list<std::uint8_t>(self.aparts));
    field.present("hasRows", !self.rowsOnDemand.empty(),
                  [&](auto& part) { part("rows", rows<std::uint8_t>(self.rowsOnDemand, &Row::key)); });
  }
};

TEST(ElementCounts, OfElementsWithoutBytesIsBelieved) {
  Sparse sparse;
  sparse.rowsOnDemand.insert({1, Row()});
  ASSERT_EQ(decode(sparse, hex("03  02 00 00  00")), "");
  EXPECT_EQ(sparse.nothings.size(), 3u);
  EXPECT_EQ(sparse.aparts.size(), 2u);
  EXPECT_TRUE(sparse.rowsOnDemand.empty()) << "rows of an earlier use stayed";
}

TEST(ElementCounts, OfAListWhoseCountStandsApartMustFitToo) {
  Apart apart;
  apart.held.resize(256);
  EXPECT_FALSE(apart.fitsOnWire());
}

/// Parts that say of themselves whether they are there, inside a part and inside a list.
struct Optional : Record<Optional> {
  std::string password;
  std::string name;
  static void fields(auto& self, auto&& field) {
    field.present("hasPassword", !self.password.empty(), [&](auto& part) { part("password", secret(self.password)); });
    field.unless("unnamed", self.name.empty(), [&](auto& part) { part("name", text<4>(self.name)); });
    field.zeros(2);
  }
};
struct Optionals : Record<Optionals> {
  Optional whole;
  std::vector<Optional> listed;
  static void fields(auto& self, auto&& field) {
    field.present("hasWhole", !self.whole.name.empty(), [&](auto& part) { Optional::fields(self.whole, part); });
    field("listed", list<std::uint8_t>(self.listed));
  }
};

TEST(OptionalParts, AreClearedMeasuredAndWipedWhereverTheyStand) {
  Optionals held;
  held.whole = {{}, "pass", "name"};
  held.listed = {{{}, "word", "long"}};
  EXPECT_TRUE(held.fitsOnWire());
  Optionals unfit = held;
  unfit.listed[0].name += '!';
  EXPECT_FALSE(unfit.fitsOnWire());

  SecretWiper wiper;
  FieldAccess::fields(held, wiper);
  EXPECT_EQ(held.whole.password + held.listed[0].password, "");
  held.whole.password = "pass";
  ASSERT_EQ(decode(held, hex("00  02  00 01 00 00  00 01 00 00")), "");
  EXPECT_EQ(held.whole.password + held.whole.name, "") << "an absent part keeps its earlier values";
  EXPECT_EQ(held.listed.size(), 2u);
}

TEST(SmallContainers, CompareByWhatTheyHold) {
  EXPECT_EQ((FlatSet<int>{3, 1, 3}).size(), 2u);
  EXPECT_TRUE((StringVector{"a", "b"} == StringVector{"a", "b"}) && !(StringVector{"a"} == StringVector{"b"}));
  RawDataHolder block("ab", 2);
  EXPECT_TRUE(block == RawDataHolder("ab", 2) && !(block == RawDataHolder("ac", 2)));
  block.clear();
  EXPECT_TRUE(block.empty());
}

}  // namespace
}  // namespace poker::test

#pragma once

// Records that imitate the hardest layouts of the system's commands, each with a value that fills all of it and the
// bytes of that value, written down by hand.

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/types/TypeWrapper.h>
#include <CommandProcessor/wire/Int2StringSer.h>
#include <CommandProcessor/wire/RawDataHolder.h>
#include <CommandProcessor/wire/RecordImpl.h>
#include <CommandProcessor/wire/String2String.h>
#include <CommandProcessor/wire/StringList.h>

#include <array>
#include <bit>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace poker::test {

using namespace wire;

enum class Level : std::uint16_t { kLow = 1, kHigh = 0x1234 };

/// Numbers that travel narrower or wider than they are held.
struct Numbers : Record<Numbers> {
  std::uint32_t id = 0x12345678;
  std::int8_t level = -2;
  std::uint8_t size = 0xFE;
  Level kind = Level::kHigh;
  Level byteKind = Level::kLow;
  char letter = 'z';
  std::uint64_t wide = 0x8000000000000001;
  std::int64_t negative = -2;
  bool flag = true;
  double real = 1.0;
  std::int16_t cleared = 9;

  static void fields(auto& self, auto&& field) {
    field("id", as<std::uint16_t>(self.id));
    field("level", as<std::int32_t>(self.level));
    field("size", as<std::uint32_t>(self.size));
    field("kind", self.kind);
    field("byteKind", as<std::uint8_t>(self.byteKind));
    field("letter", self.letter);
    field("wide", self.wide);
    field("negative", self.negative);
    field("flag", self.flag);
    field("real", self.real);
    field.local(self.cleared);
  }
  static constexpr auto kBytes =
      "78 56  FE FF FF FF  FE 00 00 00  34 12  01  7A  01 00 00 00 00 00 00 80  FE FF FF FF FF FF FF FF  01"
      " 00 00 00 00 00 00 F0 3F";
};

struct Player : Record<Player> {
  std::string name;
  std::uint32_t id = 0;
  std::string city;

  static void fields(auto& self, auto&& field) {
    field("name", self.name);
    field("id", self.id);
    field("city", self.city);
  }
};

/// Both counts stand first, other fields follow, the lists stand last.
struct TwoLists : Record<TwoLists> {
  std::vector<Player> players{{{}, "Ann", 1, "Rome"}, {{}, "", 2, "a city whose name is long"}};
  std::set<std::string> names{"b", "\xFF", "A"};
  bool open = true;
  std::uint32_t version = 7;

  static void fields(auto& self, auto&& field) {
    auto players = counted<std::uint16_t>(self.players);
    auto names = counted<std::int32_t>(self.names);
    field("playerCount", players.count());
    field("open", self.open);
    field("nameCount", names.count());
    field("players", players);
    field("names", names);
    field("version", self.version);
  }
  static constexpr auto kBytes =
      "02 00  01  03 00 00 00  41 6E 6E 00  01 00 00 00  52 6F 6D 65 00  00  02 00 00 00"
      " 61 20 63 69 74 79 20 77 68 6F 73 65 20 6E 61 6D 65 20 69 73 20 6C 6F 6E 67 00"
      "  41 00  62 00  FF 00  07 00 00 00";
};

/// Only the two dates travel.
struct Replay : Record<Replay> {
  std::uint32_t hand = 5;
  COleDateTime from{1.0};
  COleDateTime to{-0.0, COleDateTime::invalid};

  static void fields(auto& self, auto&& field) {
    field.local(self.hand);
    field("from", dateTimeStatus(self.from));
    field("to", dateTimeStatus(self.to));
  }
};

/// Parts under a mask, in an order that is not the bits' order.
struct Masked : Record<Masked> {
  std::uint32_t mask = 0x12B;
  std::uint32_t game = 1;
  COleDateTime day{2.0};
  COleDateTime end{4.0};
  std::array<std::uint8_t, 2> pair{0xAA, 0xBB};
  std::string text = "t";
  std::vector<Replay> replays = std::vector<Replay>(1);
  bool closing = true;

  static void fields(auto& self, auto&& field) {
    field("mask", self.mask);
    field.when("mask has 0x100", self.mask & 0x100, [&](auto& part) { part("game", self.game); });
    field.when("mask has 0x08", self.mask & 0x08, [&](auto& part) { part("day", self.day); });
    field.when("mask has 0x10", self.mask & 0x10, [&](auto& part) { part("end", dateTimeStatus(self.end)); });
    field.when("mask has 0x01", self.mask & 0x01, [&](auto& part) { part("pair", self.pair); });
    field.when("mask has 0x02", self.mask & 0x02, [&](auto& part) { part("text", self.text); });
    field.when("mask has 0x20", self.mask & 0x20,
               [&](auto& part) { part("replays", list<std::uint32_t>(self.replays)); });
    field("closing", self.closing);
  }
  static constexpr auto kBytes =
      "2B 01 00 00  01 00 00 00  00 00 00 00 00 00 00 40  AA BB  74 00"
      "  01 00 00 00  00 00 00 00 00 00 F0 3F 00 00 00 00  00 00 00 00 00 00 00 80 01 00 00 00  01";
};

/// A flag that is held itself, one that says that there is something, and one that says that there is nothing.
struct Presence : Record<Presence> {
  bool valid = true;
  RealMoneyType amount = RealMoneyType::fromHundredths(-5);
  std::uint16_t bonus = 2;
  RealMoneyType first = RealMoneyType::fromUnits(1);
  SeatID seat = 3;
  bool chosen = false;

  static void fields(auto& self, auto&& field) {
    field("valid", self.valid);
    field.when("valid is true", self.valid, [&](auto& part) { part("amount", self.amount); });
    field.present("hasBonus", self.bonus != 0, [&](auto& part) { part("bonus", self.bonus); });
    field.unless("empty", self.first == RealMoneyType(), [&](auto& part) {
      part("first", self.first);
      part("seat", self.seat);
      part("chosen", orElse(self.chosen, true));
    });
  }
  static constexpr auto kBytes = "01  FB FF FF FF FF FF FF FF  01 02 00  00  64 00 00 00 00 00 00 00  03  00";
};

/// Flags bytes, one of them irregular, padding, bounded text.
struct Flagged : Record<Flagged> {
  bool moveChips = true;
  bool showBoxes = false;
  bool chat = false;
  bool mail = true;
  std::string text = std::string(50, 'x');
  std::uint8_t last = 9;

  static void fields(auto& self, auto&& field) {
    field("flags", flags(bits<0x0F>("moveChips", self.moveChips), bits<0xF0>("showBoxes", self.showBoxes)));
    field("more", flags(bit<2>("chat", self.chat), bit<7>("mail", self.mail)));
    field.zeros(5);
    field("text", wire::text<50>(self.text));
    field("last", self.last);
  }
  static constexpr auto kBytes =
      "0F 80  00 00 00 00 00"
      "  78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78"
      " 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 00  09";
};

struct Prize : Record<Prize> {
  std::int32_t place = 0;
  std::uint8_t kind = 0;
  RealMoneyType amount;

  static void fields(auto& self, auto&& field) {
    field("place", self.place);
    field("kind", self.kind);
    field("amount", self.amount);
  }
};

/// A multimap of rows that hold their key, behind a signed count of which those below 1 mean none.
struct Prizes : Record<Prizes> {
  std::multimap<std::int32_t, Prize> prizes{{1, {{}, 1, 9, RealMoneyType::fromUnits(1)}},
                                            {1, {{}, 1, 8, RealMoneyType::fromUnits(2)}},
                                            {-1, {{}, -1, 7, RealMoneyType::fromUnits(0)}}};
  bool final = true;

  static void fields(auto& self, auto&& field) {
    field("final", self.final);
    field("prizes", rows<BelowOneIsNone>(self.prizes, &Prize::place));
  }
  static constexpr auto kBytes =
      "01  03 00 00 00  FF FF FF FF 07 00 00 00 00 00 00 00 00  01 00 00 00 09 64 00 00 00 00 00 00 00"
      "  01 00 00 00 08 C8 00 00 00 00 00 00 00";
};

/// Raw blocks behind sizes of every kind, and secrets.
struct Blocks : Record<Blocks> {
  std::vector<std::uint8_t> lenient{1, 2};
  std::vector<std::uint8_t> strict{3};
  std::vector<std::uint8_t> small{};
  std::array<std::uint8_t, 4> fixed{5, 6, 7, 8};
  std::vector<std::int16_t> numbers{-1};
  std::string password = "p";

  static void fields(auto& self, auto&& field) {
    field("lenient", secret(bytes<BelowOneIsNone>(self.lenient)));
    field("strict", bytes<std::int32_t>(self.strict));
    field("small", bytes<std::uint16_t>(self.small));
    field("fixed", self.fixed);
    field("numbers", list<BelowOneIsNone>(self.numbers));
    field("password", secret(self.password));
  }
  static constexpr auto kBytes = "02 00 00 00 01 02  01 00 00 00 03  00 00  05 06 07 08  01 00 00 00 FF FF  70 00";
};

/// Maps and sets behind counts of 8, 16 and 32 bits.
struct Maps : Record<Maps> {
  FlatMap<std::string, std::string> texts{{"b", "2"}, {"a", "1"}};
  FlatMap<std::uint8_t, std::uint32_t> counters{{0x80, 1}, {0x7F, 2}};
  std::map<std::int32_t, std::string> news{{-1, "x"}, {1, ""}};
  FlatMap<SeatID, RealMoneyType> wins{{SeatID(4), RealMoneyType::fromUnits(1)}};
  FlatMap<std::uint32_t, Player> players{{1, {{}, "P", 2, ""}}};
  std::set<SeatID> seats{3, 0, 7};
  std::set<std::uint32_t> ids{9, 8};

  static void fields(auto& self, auto&& field) {
    field("texts", map<std::uint8_t>(self.texts));
    field("counters", map<std::uint16_t>(self.counters));
    field("news", map<std::uint32_t>(self.news));
    field("wins", map<std::uint32_t>(self.wins));
    field("players", map<std::uint16_t>(self.players));
    field("seats", list<std::uint8_t>(self.seats));
    field("ids", list<std::uint16_t>(self.ids));
  }
  static constexpr auto kBytes =
      "02 61 00 31 00 62 00 32 00  02 00 7F 02 00 00 00 80 01 00 00 00"
      "  02 00 00 00 FF FF FF FF 78 00 01 00 00 00 00  01 00 00 00 04 64 00 00 00 00 00 00 00"
      "  01 00 01 00 00 00 50 00 02 00 00 00 00  03 00 03 07  02 00 08 00 00 00 09 00 00 00";
};

/// The containers that commands hold as one field.
struct Containers : Record<Containers> {
  String2String texts{{"b", ""}, {"a", "b"}};
  Int2StringSer numbers{{7, "x"}, {-1, "y"}};
  RawDataHolder raw{"\0\xFF", 2};
  StringVector vector{"b", "", "a"};
  StringList list{"c"};

  static void fields(auto& self, auto&& field) {
    field("texts", self.texts);
    field("numbers", self.numbers);
    field("raw", self.raw);
    field("vector", self.vector);
    field("list", self.list);
  }
  static constexpr auto kBytes =
      "02 61 00 62 00 62 00 00  02 FF FF FF FF 79 00 07 00 00 00 78 00  02 00 00 00 00 FF"
      "  03 00 00 00 62 00 00 61 00  01 00 00 00 63 00";
};

}  // namespace poker::test

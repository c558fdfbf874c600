#include <inspect/capture/PcapngReader.h>
#include <inspect/capture/PcapngWriter.h>
#include <inspect/capture/Redact.h>
#include <inspect/schema/WireWalk.h>
#include <tests/inspect/RandomFrame.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace poker::test {
namespace {

/// A frame with what a capture tells of it, in memory of its own.
struct Told {
  Bytes bytes;
  std::uint64_t offset = 0;
  std::optional<std::int64_t> time;
  std::optional<CommandDirection> direction;
  std::string connection;
  std::string table;
  std::uint64_t hand = 0;
  std::string problem;

  friend bool operator==(const Told&, const Told&) = default;
  friend void PrintTo(const Told& told, std::ostream* out) {
    *out << toHex(told.bytes) << " at " << told.offset << ", time " << told.time.value_or(-1) << ", direction "
         << (told.direction ? toText(*told.direction) : "none") << ", " << told.connection << ", " << told.table << ", "
         << told.hand << ", " << told.problem;
  }
};

std::vector<Told> readAll(PcapngReader& reader) {
  std::vector<Told> told;
  CapturedFrame frame;
  while (reader.next(frame)) {
    EXPECT_EQ(frame.number, told.size() + 1);
    told.push_back({Bytes(frame.bytes.begin(), frame.bytes.end()), frame.offset, frame.time, frame.direction,
                    std::string(frame.connection), std::string(frame.table), frame.hand, std::string(frame.problem)});
  }
  EXPECT_FALSE(reader.next(frame));
  return told;
}

/// Hands the file out in small pieces.
PcapngReader::ReadBytes piecesOf(std::span<const std::uint8_t> file) {
  return [file, place = std::size_t{0}](std::span<std::uint8_t> space) mutable {
    const std::size_t size = std::min({space.size(), file.size() - place, std::size_t{777}});
    std::copy_n(file.begin() + static_cast<std::ptrdiff_t>(place), size, space.begin());
    place += size;
    return size;
  };
}

std::vector<Told> readAll(std::span<const std::uint8_t> file) {
  PcapngReader reader(piecesOf(file));
  return readAll(reader);
}

NetworkEnd endOf(std::initializer_list<std::uint8_t> address, std::uint16_t port) {
  NetworkEnd end;
  end.isV6 = address.size() == 16;
  std::copy(address.begin(), address.end(), end.address.begin());
  end.port = port;
  return end;
}

const NetworkEnd kServer = endOf({127, 0, 0, 1}, 4000);
const NetworkEnd kServerV6 = endOf({0x20, 1, 0xd, 0xb8, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1}, 4000);

/// A capture of frames of all classes without secrets, and what it should tell.
struct MadeCapture {
  Bytes file;
  std::vector<Told> told;
  std::vector<std::size_t> ends;  // of the packets

  explicit MadeCapture(std::size_t frames) {
    std::mt19937_64 random(17);
    PcapngWriter writer("test");
    const auto all = CommandSchema::all();
    for (std::size_t i = 0; i < frames; ++i) {
      const CommandSchema& schema = all[random() % all.size()];
      Told one;
      one.bytes = randomFrame(schema, random());
      redactSecrets(one.bytes);
      one.time = static_cast<std::int64_t>(1'790'000'000'123'456'789 + random() % 1'000'000'000'000);
      one.direction = random() % 2 == 0 ? CommandDirection::ClientToServer : CommandDirection::ServerToClient;
      const auto port = static_cast<std::uint16_t>(50000 + random() % 3);
      const bool isV6 = random() % 3 == 0;
      const NetworkEnd client =
          isV6 ? endOf({0x20, 1, 0, 0, 0, 0, 0, 0, 0, 9, 0, 0, 0, 0, 0, 0xa}, port) : endOf({192, 168, 1, 20}, port);
      one.connection = (isV6 ? "[2001::9:0:0:a]:" : "192.168.1.20:") + std::to_string(port);
      one.table = random() % 4 == 0 ? "lobby" : "Table " + std::to_string(random() % 5);
      one.hand = random() % 3 == 0 ? 0 : random() % 100'000;
      const CapturedFrame frame{
          .bytes = one.bytes, .time = one.time, .direction = one.direction, .table = one.table, .hand = one.hand};
      writer.write(frame, {client, isV6 ? kServerV6 : kServer});
      ends.push_back(writer.blocks().size());
      told.push_back(std::move(one));
    }
    file.assign(writer.blocks().begin(), writer.blocks().end());
    // A frame's own place is where its bytes are found.
    std::size_t from = 0;
    for (std::size_t i = 0; i < frames; ++i) {
      const auto place = std::search(file.begin() + static_cast<std::ptrdiff_t>(from), file.end(),
                                     told[i].bytes.begin(), told[i].bytes.end());
      told[i].offset = static_cast<std::uint64_t>(place - file.begin());
      from = ends[i];
    }
  }
};

TEST(Pcapng, ReadsWhatIsWritten) {
  const MadeCapture made(1000);
  EXPECT_EQ(readAll(made.file), made.told);
}

TEST(Pcapng, HandsOutWhatStandsBeforeTheFilesEndWhereverThatIs) {
  const MadeCapture made(12);
  for (std::size_t size = 0; size < made.file.size(); ++size) {
    const auto told = readAll(std::span(made.file).first(size));
    const auto whole = static_cast<std::size_t>(
        std::count_if(made.ends.begin(), made.ends.end(), [&](std::size_t end) { return end <= size; }));
    ASSERT_GE(told.size(), whole) << size;
    for (std::size_t i = 0; i < whole; ++i) ASSERT_EQ(told[i], made.told[i]) << size;
    // The rest is told of once, unless the end is that of a block.
    if (told.size() == whole) continue;
    ASSERT_EQ(told.size(), whole + 1) << size;
    ASSERT_EQ(told.back().problem.find("the capture ends within"), 0u) << size << told.back().problem;
  }
}

/// Makes blocks as other programs do.
class Blocks {
 public:
  explicit Blocks(bool bigEndian) : bigEndian_(bigEndian) {}

  Bytes file;

  Blocks& number(std::uint64_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
      body_.push_back(static_cast<std::uint8_t>(value >> 8 * (bigEndian_ ? size - 1 - i : i)));
    }
    return *this;
  }
  Blocks& bytes(const Bytes& more) {
    body_.insert(body_.end(), more.begin(), more.end());
    return *this;
  }
  Blocks& pad() {
    body_.resize((body_.size() + 3) / 4 * 4);
    return *this;
  }
  Blocks& option(std::uint16_t code, const Bytes& value) {
    return number(code, 2).number(value.size(), 2).bytes(value).pad();
  }
  Blocks& block(std::uint32_t type) {
    const Bytes body = std::exchange(pad().body_, {});
    number(type, 4).number(body.size() + 12, 4).bytes(body).number(body.size() + 12, 4);
    file.insert(file.end(), body_.begin(), body_.end());
    body_.clear();
    return *this;
  }
  Blocks& section() { return number(0x1A2B3C4D, 4).number(1, 2).number(0, 2).number(UINT64_MAX, 8).block(0x0A0D0D0A); }
  Blocks& packetHead(std::uint32_t interface, std::uint64_t ticks, std::size_t size, std::size_t original) {
    return number(interface, 4)
        .number(ticks >> 32, 4)
        .number(ticks & 0xFFFFFFFF, 4)
        .number(size, 4)
        .number(original, 4);
  }

 private:
  bool bigEndian_;
  Bytes body_;
};

Bytes textBytes(std::string_view text) { return {text.begin(), text.end()}; }

TEST(Pcapng, ReadsWhatOtherProgramsMakeOfCaptures) {
  const Bytes keepAlive = hex("0A 00 00 00 80 02 05 00 00 00");
  // Tags in another order, one more, and no padding behind the name.
  Bytes packet =
      hex("00 15 00 04 7F 00 00 01 00 14 00 04 0A 00 00 07 00 19 00 04 00 00 C3 51 00 1A 00 04 00 00 0F A0"
          "00 1B 00 04 00 00 00 00 00 0C 00 07 63 6D 64 70 72 6F 63 00 00 00 00");
  packet.insert(packet.end(), keepAlive.begin(), keepAlive.end());
  Bytes foreign = packet;
  std::copy_n("dns\0\0\0\0", 7, foreign.end() - 4 - 7 - 10);

  std::vector<Told> expected;
  Bytes file;
  for (const bool bigEndian : {false, true}) {
    Blocks blocks(bigEndian);
    blocks.section();
    blocks.number(1, 2).number(0, 2).number(65535, 4).block(1);  // Ethernet
    blocks.number(252, 2).number(0, 2).number(0, 4).option(2, textBytes("T")).option(0, {}).block(1);
    blocks.number(252, 2)
        .number(0, 2)
        .number(0, 4)
        .option(9, {0x8A})
        .option(14, hex(bigEndian ? "00 00 00 00 00 00 00 64" : "64 00 00 00 00 00 00 00"))
        .block(1);
    blocks.bytes(Bytes(5000, 7)).block(0x80001234);  // unknown, and longer than what is read at once
    blocks.packetHead(0, 0, packet.size(), packet.size()).bytes(packet).block(6);
    blocks.packetHead(1, 0, foreign.size(), foreign.size()).bytes(foreign).block(6);
    // No flags: the class tells the direction. Microseconds, for nothing else is said.
    blocks.packetHead(1, 1'700'000'000'123'456, packet.size(), packet.size()).bytes(packet).pad();
    blocks.option(1, textBytes("a remark"))
        .option(1, textBytes("hand 9"))
        .option(4711, Bytes(3))
        .option(0, {})
        .block(6);
    // The flags tell it; 1024ths of a second, 100 seconds late.
    blocks.packetHead(2, 512 + 1024, packet.size(), packet.size()).bytes(packet).pad();
    blocks.option(2, hex(bigEndian ? "00 00 00 02" : "02 00 00 00")).block(6);
    blocks.packetHead(1, 0, packet.size() - 3, packet.size()).bytes({packet.begin(), packet.end() - 3}).block(6);
    Bytes longer = packet;
    longer.push_back(0);
    blocks.packetHead(1, 0, longer.size(), longer.size()).bytes(longer).block(6);

    const std::string whole = "10.0.0.7:50001";
    expected.push_back({keepAlive, 0, 1'700'000'000'123'456'000, CommandDirection::ClientToServer, whole, "T", 9, ""});
    expected.push_back({keepAlive, 0, 101'500'000'000, CommandDirection::ServerToClient, "127.0.0.1:4000", "", 0, ""});
    expected.push_back({{keepAlive.begin(), keepAlive.end() - 3},
                        0,
                        0,
                        CommandDirection::ClientToServer,
                        whole,
                        "T",
                        0,
                        "the capture holds 62 of a packet's 65 bytes"});
    Bytes frame = keepAlive;
    frame.push_back(0);
    expected.push_back({frame, 0, 0, CommandDirection::ClientToServer, whole, "T", 0,
                        "a packet with 11 bytes of a frame whose length is 10"});
    file.insert(file.end(), blocks.file.begin(), blocks.file.end());
  }
  // A length that nobody can have meant ends it.
  const Bytes end = hex("00 00 00 06 F0 FF FF FC 00 00 00 00");
  expected.push_back({{}, file.size(), {}, {}, "", "", 0, "a block of 4043309052 bytes"});
  file.insert(file.end(), end.begin(), end.end());

  PcapngReader reader(piecesOf(file));
  auto told = readAll(reader);
  EXPECT_EQ(reader.skippedPackets(), 4u);
  for (Told& one : told) {
    if (one.bytes.empty()) continue;
    EXPECT_TRUE(std::equal(one.bytes.begin(), one.bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(one.offset)));
    one.offset = 0;
  }
  ASSERT_EQ(told.size(), expected.size());
  for (std::size_t i = 0; i < told.size(); ++i) EXPECT_EQ(told[i], expected[i]) << i;
}

// Secrets

constexpr std::string_view kSecretText = "S3cr3tS3cr3t";

/// Random values, but every secret is the same.
class SecretFields final : public RandomFields {
 public:
  using RandomFields::RandomFields;

  void text(const Field& field, std::string& value) override {
    RandomFields::text(field, value);
    if (!field.secret) return;
    value = kSecretText;
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    RandomFields::bytes(field, value);
    if (field.secret) value.assign(kSecretText.begin(), kSecretText.end());
  }
};

bool tellsSecret(const Bytes& frame) {
  constexpr std::string_view half = kSecretText.substr(0, kSecretText.size() / 2);
  return std::search(frame.begin(), frame.end(), half.begin(), half.end()) != frame.end();
}

TEST(Redact, HidesSecretsAndNothingElseAndWhatMayBeOneInDamagedFrames) {
  std::mt19937_64 random(4);
  std::vector<std::string_view> classes;
  for (const CommandSchema& schema : CommandSchema::all()) {
    for (int round = 0; round < 40; ++round) {
      SecretFields values(random());
      const Bytes frame = randomFrame(schema, values);
      const bool isSecret = tellsSecret(frame);
      if (isSecret && (classes.empty() || classes.back() != schema.name())) classes.push_back(schema.name());
      // What remains, byte by byte.
      Bytes expected = frame;
      walkCommand(schema, std::span(frame).subspan(4), [&](const WirePiece& piece) {
        if (!piece.field->secret || piece.isCount) return;
        const auto hidden = piece.bytes.size() - (piece.field->type == FieldType::String ? 1 : 0);
        std::fill_n(expected.begin() + 4 + static_cast<std::ptrdiff_t>(piece.offset), hidden, std::uint8_t{'*'});
      });
      Bytes redacted = frame;
      redactSecrets(redacted);
      ASSERT_EQ(redacted, expected) << schema.name();
      ASSERT_FALSE(tellsSecret(redacted)) << schema.name();
      if (!isSecret) continue;
      for (int damage = 0; damage < 100; ++damage) {
        Bytes wrong = frame;
        if (damage % 2 == 0) {
          wrong.resize(6 + random() % (wrong.size() - 6));
        } else {
          wrong[6 + random() % (wrong.size() - 6)] = damage % 4 == 1 ? 0 : static_cast<std::uint8_t>(random());
        }
        const bool isWhole = !walkCommand(schema, std::span(wrong).subspan(4), [](const WirePiece&) {});
        Bytes treated = wrong;
        redactSecrets(treated);
        ASSERT_EQ(treated.size(), wrong.size());
        if (!isWhole) {
          ASSERT_FALSE(tellsSecret(treated)) << schema.name() << toHex(wrong);
        }
      }
    }
  }
  EXPECT_GE(classes.size(), 12u);

  // Neither frames that name no class nor pieces of frames are touched.
  for (const char* digits : {"", "05 00", "06 00 00 00 80", "0A 00 00 00 FE FE 05 00 00 00"}) {
    Bytes odd = hex(digits);
    redactSecrets(odd);
    EXPECT_EQ(odd, hex(digits));
  }
}

}  // namespace
}  // namespace poker::test

#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <hostkit/Batch.h>
#include <hostkit/Encode.h>
#include <hostkit/StreamFramer.h>
#include <inspect/capture/PcapngWriter.h>
#include <inspect/schema/WireWalk.h>
#include <tests/cmdproc/Ran.h>
#include <tests/cmdproc/TcpCapture.h>
#include <tests/inspect/RandomFrame.h>
#include <tools/cmdproc/dissector/Dissector.h>
#include <tools/cmdproc/input/DecodeFrame.h>

#include <fmt/format.h>
#include <fmt/printf.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <set>

namespace poker::cmdproc {
namespace {

using test::Bytes;
using test::hex;
using test::joined;
using test::Piece;
using test::writeFile;

std::string hexOf(std::span<const std::uint8_t> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const std::uint8_t byte : bytes) (hex += kDigits[byte >> 4]) += kDigits[byte & 15];
  return hex;
}

// --- what tshark shows -----------------------------------------------------------------------------------------------

/// A field as tshark shows it: what it stands for, its label, its bytes.
struct Shown {
  std::string name, show, label, bytes;
  std::size_t position = 0;
  bool hidden = false;
};

/// A command, or something that the plugin took for one: all fields in the order of the tree.
struct ShownCommand {
  std::size_t position = 0;
  std::size_t packet = 0;
  std::vector<Shown> fields;

  const Shown* find(std::string_view name) const {
    for (const Shown& field : fields) {
      if (field.name == name) return &field;
    }
    return nullptr;
  }
  std::string show(std::string_view name) const {
    const Shown* field = find(name);
    return field == nullptr ? "" : field->show;
  }
};

/// Reads PDML, as far as tshark writes it.
class PdmlReader {
 public:
  std::vector<ShownCommand> commands;

  void element(std::string_view text) {
    if (text.starts_with("<packet>")) ++packets_;
    const bool isProtocol = text.starts_with("<proto ");
    if (!isProtocol && !text.starts_with("<field ")) return;
    Shown shown;
    const std::string position = attribute(text, "pos");
    shown.position = position.empty() ? 0 : std::stoul(position);
    shown.name = attribute(text, "name");
    if (isProtocol) {
      if (shown.name == "cmdproc") commands.push_back({shown.position, packets_, {}});
      return;
    }
    const bool isOurs = shown.name.starts_with("cmdproc.") || shown.name.starts_with("_ws.lua");
    if (!isOurs || commands.empty()) return;
    shown.show = attribute(text, "show");
    shown.label = attribute(text, "showname");
    shown.bytes = attribute(text, "value");
    shown.hidden = attribute(text, "hide") == "yes";
    commands.back().fields.push_back(std::move(shown));
  }

 private:
  static std::string attribute(std::string_view text, std::string_view name) {
    const std::size_t found = text.find(' ' + std::string(name) + "=\"");
    if (found == std::string_view::npos) return {};
    text.remove_prefix(found + name.size() + 3);
    std::string value(text.substr(0, text.find('"')));
    for (const auto& [entity, character] :
         {std::pair("&lt;", "<"), {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&#x27;", "'"}, {"&amp;", "&"}}) {
      for (std::size_t at = 0; (at = value.find(entity, at)) != std::string::npos; ++at) {
        value.replace(at, std::string_view(entity).size(), character);
      }
    }
    return value;
  }

  std::size_t packets_ = 0;
};

/// A plugin and captures, away from the settings and plugins of whoever runs the test.
class Dissector : public testing::Test {
 protected:
  void SetUp() override {
    if (std::system("tshark --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "there is no tshark (Debian: tshark)";
    writeFile(plugin(), test::cmdproc("dissector").out);
  }

  std::string plugin() const { return folder_.file("cmdproc.lua"); }
  std::string capture() const { return folder_.file("capture.pcap"); }

  /// Lets tshark read the capture, and hands over its output in pieces that end with `end`.
  template <class Use>
  void runTshark(const std::string& options, char end, const Use& use) {
    const std::string home = folder_.file(""), messages = folder_.file("messages");
    const std::string command = "HOME=" + home + " WIRESHARK_CONFIG_DIR=" + home + " WIRESHARK_PLUGIN_DIR=" + home +
                                "none tshark -X lua_script:" + plugin() + " -r " + capture() +
                                " -o cmdproc.tcp_ports:4000 " + options + " 2>" + messages;
    std::FILE* output = popen(command.c_str(), "r");
    ASSERT_NE(output, nullptr);
    char* text = nullptr;
    std::size_t capacity = 0;
    for (ssize_t size = 0; (size = getdelim(&text, &capacity, end, output)) > 0;) {
      use(std::string_view(text, static_cast<std::size_t>(size)));
    }
    std::free(text);
    EXPECT_EQ(pclose(output), 0);
    std::ifstream said(messages);
    for (std::string line; std::getline(said, line);) {
      EXPECT_TRUE(line.starts_with("Running as user")) << line;
    }
  }

  std::vector<ShownCommand> shownCommands(const std::vector<Piece>& pieces) {
    test::writeCapture(capture(), DLT_RAW, pieces);
    return shownCommands();
  }
  std::vector<ShownCommand> shownCommands() {
    PdmlReader reader;
    runTshark("-T pdml -J cmdproc -o cmdproc.show_secrets:TRUE", '>',
              [&](std::string_view piece) { reader.element(piece.substr(std::min(piece.find('<'), piece.size()))); });
    return std::move(reader.commands);
  }

  std::string printed(const std::string& options) {
    std::string text;
    runTshark(options, '\n', [&](std::string_view line) { text += line; });
    return text;
  }

 private:
  test::TempFolder folder_;
};

/// Characters of ISO 8859-1 as PDML has them: in UTF-8, what XML cannot hold escaped.
std::string inPdml(std::string_view text) {
  std::string utf8;
  for (const char c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    if (c == 0x7F || (byte < 0x20 && c != '\t' && c != '\n' && c != '\r')) {
      utf8 += fmt::format("\\x{:x}", byte);
    } else if (byte < 0x80) {
      utf8 += c;
    } else {
      (utf8 += static_cast<char>(0xC0 | byte >> 6)) += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

// --- what the classes say --------------------------------------------------------------------------------------------

/// What must be shown of a command's field: its name, and its value and bytes unless these are empty.
struct Expected {
  std::string name = {}, show = {}, bytes = {};
};

/// Asks the class.
class ExpectedFields : public FieldVisitor {
 public:
  std::vector<Expected> fields;
  std::vector<std::string> amounts;

  explicit ExpectedFields(const PokerCommandI& command) {
    const CommandFields& row = *CommandFields::of(command);
    path_.push_back("cmdproc." + snakeCase(row.description->name));
    add({.name = path_.back()});
    row.visit(command, *this);
  }

  void number(const Field& field, std::int64_t& value) override {
    if (absent_ != 0) return;
    const bool isUnsigned = field.type == FieldType::U64;
    const auto bits = static_cast<std::uint64_t>(value);
    add({.name = nameOf(field), .show = isUnsigned ? std::to_string(bits) : std::to_string(value)});
    if (field.type == FieldType::Money) amounts.push_back(std::to_string(value));
  }
  void real(const Field& field, double& value) override {
    const auto raw = std::bit_cast<std::array<std::uint8_t, 8>>(value);
    add({.name = nameOf(field), .show = fmt::sprintf("%.15g", value), .bytes = hexOf(raw)});
  }
  void text(const Field& field, std::string& value) override {
    const auto* raw = reinterpret_cast<const std::uint8_t*>(value.c_str());
    guarded(field, inPdml(value), hexOf({raw, value.size() + 1}));
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    count(field, value.size());
    guarded(field, "", hexOf(value));
  }
  void beginRecord(const Field& field) override {
    path_.push_back(nameOf(field));
    add({.name = path_.back()});
  }
  void endRecord(const Field&) override { path_.pop_back(); }
  std::size_t beginList(const Field& field, std::size_t size) override {
    count(field, size);
    path_.push_back(nameOf(field));
    return size;
  }
  void endList(const Field&) override { path_.pop_back(); }
  std::size_t beginMap(const Field& field, std::size_t size) override { return beginList(field, size); }
  void endMap(const Field&) override { path_.pop_back(); }
  void beginPart(std::string_view, bool present) override { absent_ += absent_ != 0 || !present ? 1 : 0; }
  void endPart() override { absent_ -= absent_ != 0 ? 1 : 0; }

 private:
  std::string nameOf(const Field& field) const {
    return field.name.empty() ? path_.back() : path_.back() + '.' + snakeCase(field.name);
  }
  void count(const Field& field, std::size_t size) {
    if (field.count) add({.name = nameOf(field) + ".count", .show = std::to_string(size)});
  }
  /// Of a secret there is the place, and below it what is shown only when it is asked for.
  void guarded(const Field& field, std::string show, std::string bytes) {
    if (field.secret) add({.name = nameOf(field)});
    add({.name = nameOf(field) + (field.secret ? ".clear" : ""), .show = std::move(show), .bytes = std::move(bytes)});
  }
  void add(Expected field) {
    if (absent_ == 0) fields.push_back(std::move(field));
  }

  std::vector<std::string> path_;
  int absent_ = 0;
};

void expectShown(const ShownCommand& shown, std::span<const std::uint8_t> frame) {
  const DecodeResult decoded = decodeFrame(frame);
  ASSERT_TRUE(decoded) << decoded.error.toString();
  const ExpectedFields expected(*decoded.command);
  std::vector<const Shown*> fields;
  std::vector<std::string> amounts;
  const std::string prefix = expected.fields.front().name;
  for (const Shown& field : shown.fields) {
    if (field.name == prefix || field.name.starts_with(prefix + '.')) fields.push_back(&field);
    if (field.name == "cmdproc.money") amounts.push_back(field.show);
    if (field.name == "cmdproc.money" || field.name == "cmdproc.seat" || field.name == "cmdproc.game_id") {
      EXPECT_TRUE(field.hidden);
    }
  }
  ASSERT_EQ(shown.find("cmdproc.problem"), nullptr) << shown.show("cmdproc.problem");
  ASSERT_EQ(fields.size(), expected.fields.size()) << prefix;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Expected& field = expected.fields[i];
    ASSERT_EQ(fields[i]->name, field.name);
    if (!field.show.empty()) {
      ASSERT_EQ(fields[i]->show, field.show) << field.name;
    }
    if (!field.bytes.empty()) {
      ASSERT_EQ(fields[i]->bytes, field.bytes) << field.name;
    }
  }
  ASSERT_EQ(amounts, expected.amounts) << prefix;
}

void expectShown(const std::vector<ShownCommand>& shown, const std::vector<Bytes>& frames) {
  ASSERT_EQ(shown.size(), frames.size());
  for (std::size_t i = 0; i < frames.size(); ++i) {
    ASSERT_NO_FATAL_FAILURE(expectShown(shown[i], frames[i])) << "command " << i << ": " << hexOf(frames[i]);
  }
}

// --- commands --------------------------------------------------------------------------------------------------------

/// So many whole frames of every class but batches, with random values: a batch with random bytes in it is none.
std::vector<Bytes> randomFrames(std::mt19937_64& random, int rounds) {
  std::vector<Bytes> frames;
  for (int round = 0; round < rounds; ++round) {
    for (const CommandSchema& schema : CommandSchema::all()) {
      if (schema.name() != CommandInfo<SrvCompressedCommands>::name) {
        frames.push_back(test::randomFrame(schema, random()));
      }
    }
  }
  return frames;
}

Bytes batchOf(const Bytes& frames) {
  SerializeCommandBuf buffer(256);
  const auto batch = make<SrvCompressedCommands>(frames.data(), static_cast<unsigned>(frames.size()));
  const auto bytes = encodeCommand(*batch, buffer);
  return {bytes.begin(), bytes.end()};
}

/// Bytes to the server from that port of a client's.
Piece segment(std::uint16_t port, std::size_t offset, std::span<const std::uint8_t> bytes, std::size_t missing = 0) {
  return {{"127.0.0.1", port}, {"127.0.0.1", 4000},          static_cast<std::uint32_t>(1 + offset),
          Tins::TCP::ACK,      {bytes.begin(), bytes.end()}, missing};
}
/// Adds a stream, cut into segments of so many bytes.
void addStream(std::vector<Piece>& pieces, std::uint16_t port, std::span<const std::uint8_t> bytes, std::size_t size) {
  for (std::size_t at = 0; at < bytes.size(); at += size) {
    pieces.push_back(segment(port, at, bytes.subspan(at, std::min(size, bytes.size() - at))));
  }
}

/// Values as they lie in memory: numbers and bytes.
template <class T>
Bytes frameOf(std::string_view name, const std::vector<T>& fields) {
  const CommandDescription& row = *findCommand(name);
  Bytes frame = {0, 0, 0, 0, row.code, static_cast<std::uint8_t>(row.family)};
  for (const T field : fields) {
    const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(T)>>(field);
    frame.insert(frame.end(), bytes.begin(), bytes.end());
  }
  frame[0] = static_cast<std::uint8_t>(frame.size());
  return frame;
}

const Bytes kKeepAlive = hex("0A 00 00 00 80 02 05 00 00 00");

// --- tests -----------------------------------------------------------------------------------------------------------

TEST(DissectorNames, WordsAndSharedFilters) {
  EXPECT_EQ(snakeCase("ClSitDown"), "cl_sit_down");
  EXPECT_EQ(snakeCase("SrvTUShowDown"), "srv_tu_show_down");
  EXPECT_EQ(snakeCase("ClMoveMe2MyTable"), "cl_move_me2_my_table");
  EXPECT_EQ(snakeCase("frIDHolder"), "fr_id_holder");
  EXPECT_EQ(snakeCase("clientIP"), "client_ip");

  std::map<std::string_view, std::set<std::string>> named;
  std::set<std::string> others;
  const std::function<void(const SchemaField&, const SchemaField*)> collect = [&](const SchemaField& field,
                                                                                  const SchemaField* container) {
    const std::string name = container != nullptr ? container->name + '/' + field.name : field.name;
    named[sharedFilter(field, container)].insert(name);
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

TEST_F(Dissector, AgreesWithEveryClass) {
  std::mt19937_64 random(1);
  const std::vector<Bytes> frames = randomFrames(random, 48);
  std::vector<Piece> pieces;
  addStream(pieces, 20000, joined(frames), 1000);
  expectShown(shownCommands(pieces), frames);
}

TEST_F(Dissector, ReadsWhatTheServerRecords) {
  const Bytes money = frameOf<std::int64_t>("SrvMoney", {1250, -5, 300, INT64_MIN});
  PcapngWriter writer("test");
  writer.write({.bytes = money, .table = "T"}, {});
  writeFile(capture(), {reinterpret_cast<const char*>(writer.blocks().data()), writer.blocks().size()});
  expectShown(shownCommands(), {money});
}

TEST_F(Dissector, AgreesWhereverTheStreamIsCut) {
  std::mt19937_64 random(2);
  // At every byte, all commands one after the other.
  std::vector<Bytes> frames = randomFrames(random, 1);
  std::vector<Piece> pieces;
  addStream(pieces, 20000, joined(frames), 1);
  std::uint16_t port = 20001;
  // Into segments of one size, from many for a command to many commands in one.
  for (const std::size_t size : {3u, 17u, 251u, 1448u, 20000u}) {
    const std::vector<Bytes> more = randomFrames(random, 2);
    addStream(pieces, port++, joined(more), size);
    frames.insert(frames.end(), more.begin(), more.end());
  }
  // Three short commands into two segments, in every way.
  const Bytes three = joined(std::vector(3, kKeepAlive));
  for (std::size_t at = 1; at < 30; ++at, ++port) {
    pieces.push_back(segment(port, 0, std::span(three).first(at)));
    pieces.push_back(segment(port, at, std::span(three).subspan(at)));
    frames.insert(frames.end(), 3, kKeepAlive);
  }
  expectShown(shownCommands(pieces), frames);
}

TEST_F(Dissector, AgreesInsideBatches) {
  std::mt19937_64 random(3);
  std::vector<Bytes> frames;
  Bytes stream;
  const std::vector<Bytes> commands = randomFrames(random, 8);
  for (std::span<const Bytes> rest = commands; !rest.empty();) {
    const auto inside = rest.first(std::min<std::size_t>(rest.size(), random() % 40));
    rest = rest.subspan(inside.size());
    frames.push_back(batchOf(joined(inside)));
    stream.insert(stream.end(), frames.back().begin(), frames.back().end());
    frames.insert(frames.end(), inside.begin(), inside.end());
  }
  std::vector<Piece> pieces;
  addStream(pieces, 20000, stream, 1000);
  expectShown(shownCommands(pieces), frames);
}

/// Gives one of the counts in a frame a value at the edge of what is allowed.
/// @return false when the frame has none
bool changeCount(const CommandSchema& schema, Bytes& frame, std::uint64_t random) {
  std::vector<std::pair<std::size_t, const SchemaField*>> counts;
  const auto failure = walkCommand(schema, std::span(frame).subspan(kLengthSlot), [&](const WirePiece& piece) {
    if (piece.isCount) counts.emplace_back(kLengthSlot + piece.offset, piece.field);
  });
  EXPECT_FALSE(failure) << schema.name();
  if (counts.empty()) return false;
  const auto& [offset, field] = counts[random % counts.size()];
  const std::array<std::uint64_t, 4> values = {0, UINT64_MAX, field->most, field->most + std::uint64_t{1}};
  const std::uint64_t value = values[random / counts.size() % values.size()];
  for (std::uint32_t i = 0; i < widthOf(*field->count); ++i) {
    frame[offset + i] = static_cast<std::uint8_t>(value >> 8 * i);
  }
  return true;
}

TEST_F(Dissector, MarksWhereReadingFails) {
  std::mt19937_64 random(4);
  std::vector<Bytes> frames;
  for (const CommandSchema& schema : CommandSchema::all()) {
    if (schema.name() == "ClMiscDumpManager") continue;  // nobody receives it
    for (int damage = 0; damage < 36; ++damage) {
      Bytes frame = test::randomFrame(schema, random());
      const std::size_t fields = frame.size() - kShortestFrame;
      if (damage % 2 == 1 && changeCount(schema, frame, random())) {
        // It leads elsewhere now, or nowhere.
      } else if (damage % 3 == 0 && fields != 0) {
        frame[kShortestFrame + random() % fields] ^= static_cast<std::uint8_t>(1 + random() % 255);
      } else if (damage % 3 == 1) {
        frame.resize(kShortestFrame + (fields == 0 ? 0 : random() % fields));
      } else {
        frame.resize(frame.size() + 1 + random() % 4);
      }
      frame[0] = static_cast<std::uint8_t>(frame.size());
      frame[1] = static_cast<std::uint8_t>(frame.size() >> 8);
      frames.push_back(std::move(frame));
    }
  }
  std::vector<Piece> pieces;
  for (const Bytes& frame : frames)
    pieces.push_back(segment(static_cast<std::uint16_t>(20000 + pieces.size()), 0, frame));
  const std::vector<ShownCommand> shown = shownCommands(pieces);
  ASSERT_EQ(shown.size(), frames.size());
  std::size_t failures = 0;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const std::string name = shown[i].show("cmdproc.command");
    const auto failure =
        walkCommand(*CommandSchema::find(name), std::span(frames[i]).subspan(kLengthSlot), [](auto&) {});
    const Shown* problem = shown[i].find("cmdproc.problem");
    if (!failure) {
      // A random body is no batch.
      EXPECT_EQ(problem != nullptr, name == "SrvCompressedCommands") << name << ' ' << hexOf(frames[i]);
      continue;
    }
    ++failures;
    ASSERT_NE(problem, nullptr) << name << ' ' << failure->path << ' ' << hexOf(frames[i]);
    EXPECT_EQ(problem->position - shown[i].position, kLengthSlot + failure->offset) << problem->show;
    EXPECT_EQ(problem->bytes.size(), 2 * failure->remaining) << problem->show;
    std::string place = name + ": ";
    if (!failure->path.empty()) place += failure->path + ' ';
    EXPECT_EQ(problem->show, place + "at byte " + std::to_string(kLengthSlot + failure->offset) + ", " +
                                 std::to_string(failure->remaining) + " bytes left: " + failure->problem);
    EXPECT_NE(shown[i].find("cmdproc.expert.malformed"), nullptr) << name;
  }
  EXPECT_GT(failures, frames.size() / 3);
}

TEST_F(Dissector, MarksWhatIsNoCommand) {
  Bytes announcesMore = batchOf(kKeepAlive);
  announcesMore[6] = 11;
  Bytes announcesLess = batchOf(kKeepAlive);
  announcesLess[6] = 9;
  Bytes damaged = batchOf(kKeepAlive);
  damaged.back() ^= 1;
  Bytes huge = batchOf(kKeepAlive);
  huge[8] = 0x11;
  Bytes nested = batchOf(batchOf(kKeepAlive));
  Bytes partial = batchOf(hex("0B 00 00 00 80 02 05 00 00 00"));
  const std::vector<std::pair<Bytes, std::string>> frames = {
      {hex("08 00 00 00 FA 63 01 02"), "family 99, code 250: no command, 2 bytes left"},
      {announcesMore, "the batch holds less than it announces"},
      {announcesLess, "the batch holds more than it announces"},
      {damaged, "the batch is damaged"},
      {huge, "the batch announces more than a batch may hold"},
      {nested, "the batch holds another batch"},
      {partial, "10 bytes that are no whole frame"},
      {hex("05 00 00 00 80"), "a frame of 5 bytes is below the minimum of 6; the stream is out of step"},
      {hex("00 00 00 80 80 02"),
       "a frame of 2147483648 bytes is above the limit of 1048576; the stream is out of step"},
  };
  std::vector<Piece> pieces;
  std::uint16_t port = 20000;
  for (const auto& [frame, problem] : frames) pieces.push_back(segment(port++, 0, frame));
  pieces.push_back(segment(port, 0, kKeepAlive, 2));
  std::map<std::size_t, std::vector<std::string>> problems;
  bool cut = false;
  for (const ShownCommand& shown : shownCommands(pieces)) {
    if (const Shown* problem = shown.find("cmdproc.problem")) problems[shown.packet].push_back(problem->show);
    if (shown.find("cmdproc.expert.cut") != nullptr) {
      cut = true;
      EXPECT_EQ(shown.packet, frames.size() + 1);
    }
  }
  EXPECT_TRUE(cut);
  // The list of packets tells them too, for which no tree is made.
  const std::string list = printed("");
  for (const std::string_view text :
       {"unknown (99, 250)", "SrvCompressedCommands (damaged)", "no frame", "(cut off)"}) {
    EXPECT_NE(list.find(text), std::string::npos) << text << " is not in\n" << list;
  }
  for (std::size_t i = 0; i < frames.size(); ++i) {
    EXPECT_EQ(problems[i + 1], std::vector{frames[i].second});
  }
}

TEST_F(Dissector, ShowsAmountsTimesAndTexts) {
  const std::vector<std::pair<double, std::string>> times = {
      {0.0, "1899-12-30 00:00:00.000 UTC"},
      {-1.25, "1899-12-29 06:00:00.000 UTC"},
      {36585.5, "2000-02-29 12:00:00.000 UTC"},
      {45000.999999999, "2023-03-16 00:00:00.000 UTC"},
      {-657434.0, "0100-01-01 00:00:00.000 UTC"},
      {2958465.9999, "9999-12-31 23:59:51.360 UTC"},
      {1e300, "no date"},
      {std::numeric_limits<double>::quiet_NaN(), "no date"},
  };
  std::vector<Bytes> frames = {
      frameOf<std::int64_t>("SrvMoney", {1250, -5, 300, INT64_MIN}),
      frameOf("SrvChatMsg", hex("4A 6F E9 00 3C 22 26 FC 3E 00 01 02")),
      frameOf("SrvShowPlayerCards", Bytes{6, 0, 0, 0, 255, 0x3C, 100 + 0x1E, 99, 100, 254, 7}),
  };
  for (const auto& [days, text] : times) frames.push_back(frameOf<double>("SrvConnectGameOK", {days}));
  std::vector<Piece> pieces;
  addStream(pieces, 20000, joined(frames), 100);
  const std::vector<ShownCommand> shown = shownCommands(pieces);
  ASSERT_NO_FATAL_FAILURE(expectShown(shown, frames));
  const auto label = [](const ShownCommand& command, std::string_view name) {
    const Shown* field = command.find(name);
    return field == nullptr ? "" : field->label;
  };
  EXPECT_EQ(label(shown[0], "cmdproc.srv_money.available"), "available: 12.50");
  EXPECT_EQ(label(shown[0], "cmdproc.srv_money.at_table"), "atTable: -0.05");
  EXPECT_EQ(label(shown[0], "cmdproc.srv_money.minimum"), "minimum: 3");
  EXPECT_EQ(label(shown[0], "cmdproc.srv_money.maximum"), "maximum: -92233720368547758.08");
  EXPECT_EQ(shown[1].show("cmdproc.srv_chat_msg.sender"), "Jo\xC3\xA9");
  EXPECT_EQ(shown[1].show("cmdproc.srv_chat_msg.message"), "<\"&\xC3\xBC>");
  std::vector<std::string> cards;
  for (const Shown& field : shown[2].fields) {
    if (field.name == "cmdproc.srv_show_player_cards.cards") cards.push_back(field.label);
  }
  cards.resize(3);
  EXPECT_EQ(cards, (std::vector<std::string>{"cards: hidden", "cards: Queen of Hearts",
                                             "cards: Ace of Clubs, seen by its owner"}));
  for (std::size_t i = 0; i < times.size(); ++i) {
    EXPECT_NE(label(shown[3 + i], "cmdproc.srv_connect_game_ok.server_time").find('(' + times[i].second + ')'),
              std::string::npos)
        << label(shown[3 + i], "cmdproc.srv_connect_game_ok.server_time") << " is not " << times[i].second;
  }
}

TEST_F(Dissector, FiltersAndListsAndKeepsSecrets) {
  const Bytes money = frameOf<std::int64_t>("SrvMoney", {1250, 0, 0, 0});
  const Bytes turn = frameOf("SrvSitOk", Bytes{4});
  const Bytes password = frameOf("ClSendUserPass", Bytes{'s', 'e', 's', 'a', 'm', 'e', 0});
  const Bytes stream = joined(std::vector{money, turn, batchOf(joined(std::vector{turn, money})), password});
  // The second segment ends one command and has another.
  const std::size_t second = money.size() + turn.size() - 1;
  const std::size_t third = stream.size() - password.size();
  std::vector<Piece> pieces;
  std::size_t at = 0;
  for (const std::size_t end : {std::size_t{20}, second, third, stream.size()}) {
    pieces.push_back(segment(20000, at, std::span(stream).subspan(at, end - at)));
    at = end;
  }
  test::writeCapture(capture(), DLT_RAW, pieces);
  EXPECT_EQ(printed("-T fields -e _ws.col.Protocol -e _ws.col.Info -Y 'frame.number > 1'"),
            "cmdproc\tSrvMoney\n"
            "cmdproc\tSrvSitOk, SrvCompressedCommands (SrvSitOk, SrvMoney)\n"
            "cmdproc\tClSendUserPass\n");
  EXPECT_EQ(printed("-T fields -e frame.number -Y 'cmdproc.money == 1250'"), "2\n3\n");
  EXPECT_EQ(printed("-T fields -e frame.number -Y 'cmdproc.seat == 4'"), "3\n");
  EXPECT_EQ(printed("-T fields -e cmdproc.command -Y 'cmdproc.cl_send_user_pass'"), "ClSendUserPass\n");
  // Nothing that shows no raw bytes shows the secret, unless it is asked for.
  EXPECT_EQ(printed("-V -O cmdproc -Y cmdproc").find("sesame"), std::string::npos);
  EXPECT_EQ(printed("-T json -J cmdproc").find("sesame"), std::string::npos);
  EXPECT_NE(printed("-V -O cmdproc -Y cmdproc").find("password: ***"), std::string::npos);
  EXPECT_EQ(printed("-T fields -e cmdproc.cl_send_user_pass.password.clear -o cmdproc.show_secrets:TRUE "
                    "-Y cmdproc.cl_send_user_pass.password"),
            "sesame\n");
}

}  // namespace
}  // namespace poker::cmdproc

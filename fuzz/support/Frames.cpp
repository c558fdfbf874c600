#include <CommandProcessor/wire/FieldVisitor.h>
#include <CommandProcessor/wire/WireNumber.h>
#include <fuzz/support/Frames.h>
#include <hostkit/Decode.h>
#include <hostkit/Encode.h>
#include <inspect/CommandFields.h>
#include <inspect/schema/WireWalk.h>
#include <tests/support/RandomFields.h>

#include <algorithm>
#include <bit>
#include <filesystem>
#include <fstream>
#include <functional>

namespace poker::fuzz {

namespace {

constexpr std::size_t kFrameBytes = 2;  // type code, family
/// What a mutation copies or inserts stays short: long inputs make for slow executions.
constexpr std::size_t kLongestEdit = 64;

Bytes fromHex(std::string_view digits) {
  Bytes bytes;
  int half = -1;
  for (const char c : digits) {
    if (c == ' ' || c == '\r') continue;
    const int value = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
    if (half >= 0) bytes.push_back(static_cast<std::uint8_t>(half << 4 | value));
    half = half >= 0 ? -1 : value;
  }
  return bytes;
}

/// Gives some fields of an object other values, and leaves the rest.
class SomeOtherFields final : public test::RandomFields {
 public:
  explicit SomeOtherFields(Random& random) : RandomFields(random()), random_(random) {}

  void number(const Field& field, std::int64_t& value) override {
    if (changes()) RandomFields::number(field, value);
  }
  void real(const Field& field, double& value) override {
    if (changes()) RandomFields::real(field, value);
  }
  void text(const Field& field, std::string& value) override {
    if (changes()) RandomFields::text(field, value);
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    if (changes()) RandomFields::bytes(field, value);
  }
  std::size_t beginList(const Field& field, std::size_t size) override {
    if (size > kLongestEdit || !changes()) return size;
    return random_.oneIn(2) ? size + 1 : RandomFields::beginList(field, size);
  }
  void beginEntry() override { ++inMap_; }
  void endEntry() override { --inMap_; }

 private:
  // A map starts from nothing: its entries are all new.
  bool changes() { return inMap_ != 0 || random_.oneIn(6); }

  Random& random_;
  int inMap_ = 0;
};

/// Writes an object of the class, whose fields the visitor has set. Empty when it cannot be sent.
Bytes written(const CommandClass& named, PokerCommandI& object, FieldVisitor& values) {
  static SerializeCommandBuf buffer(4096);
  try {
    CommandFields::of(named.name())->assign(object, values);
  } catch (const FieldValueError&) {  // some are held narrower than they travel: what is set so far will do
  }
  try {
    const auto frame = encodeCommand(object, buffer).subspan(sizeof(std::uint32_t));
    return {frame.begin(), frame.end()};
  } catch (const EncodeError&) {
    return {};
  }
}

void changeObject(const CommandClass& named, Bytes& command, Random& random) {
  const DecodePolicy lenient{.receives = named.direction(), .rejectTrailing = false, .wipeSecrets = false};
  DecodeResult object = decodeCommand(named, command, lenient);
  if (!object) object.command = CommandHandle<>(named.create());
  SomeOtherFields values(random);
  if (Bytes changed = written(named, *object.command, values); !changed.empty()) command = std::move(changed);
}

struct Piece {
  FieldType type;
  std::size_t offset;
  std::size_t size;
  bool isCount;
};

/// The fields and counts that can be read.
const std::vector<Piece>& piecesOf(const CommandSchema& schema, const Bytes& command) {
  static std::vector<Piece> pieces;
  static const std::function<void(const WirePiece&)> add = [](const WirePiece& piece) {
    pieces.push_back({piece.type(), piece.offset, piece.bytes.size(), piece.isCount});
  };
  pieces.clear();
  walkCommand(schema, command, add);
  return pieces;
}

void changeNumber(Bytes& command, std::size_t offset, std::size_t width, Random& random) {
  std::uint64_t held = 0;
  for (std::size_t i = 0; i < width; ++i) held |= std::uint64_t{command[offset + i]} << 8 * i;
  const std::uint64_t value = edge(held, command.size() - offset - width, random);
  for (std::size_t i = 0; i < width; ++i) command[offset + i] = static_cast<std::uint8_t>(value >> 8 * i);
}

void changePiece(const std::vector<Piece>& pieces, Bytes& command, Random& random) {
  const std::size_t index = random.below(pieces.size());
  const Piece piece = pieces[index];
  const auto begin = command.begin() + static_cast<std::ptrdiff_t>(piece.offset);
  const auto end = begin + static_cast<std::ptrdiff_t>(piece.size);
  switch (piece.type) {
    case FieldType::String:
      switch (random.below(3)) {
        case 0:
          command.insert(begin, 1 + random.below(kLongestEdit), random.byte());
          break;
        case 1:
          command.erase(begin, end - 1);
          break;
        default:
          command[piece.offset + random.below(piece.size)] = random.byte();  // its NUL, too
      }
      break;
    case FieldType::Bytes: {
      const std::size_t more = random.below(kLongestEdit);
      command.insert(end, more, random.byte());
      // Mostly the size in front goes with it.
      if (index == 0 || !pieces[index - 1].isCount || random.oneIn(8)) break;
      const std::size_t size = piece.size + more;
      const Piece& count = pieces[index - 1];
      for (std::size_t i = 0; i < count.size; ++i) {
        command[count.offset + i] = static_cast<std::uint8_t>(std::uint64_t{size} >> 8 * i);
      }
      break;
    }
    default:
      if (piece.size != 0) changeNumber(command, piece.offset, piece.size, random);
  }
}

/// Copies a run of fields to the place of another, or drops it.
void moveFields(const std::vector<Piece>& pieces, Bytes& command, Random& random) {
  const std::size_t first = pieces[random.below(pieces.size())].offset;
  const Piece& last = pieces[random.below(pieces.size())];
  const std::size_t end = last.offset + last.size;
  if (end <= first) return;
  const auto from = command.begin() + static_cast<std::ptrdiff_t>(first);
  const auto to = command.begin() + static_cast<std::ptrdiff_t>(end);
  if (random.oneIn(3)) {
    command.erase(from, to);
    return;
  }
  const Bytes run(from, from + std::min<std::ptrdiff_t>(to - from, kLongestEdit));
  const std::size_t place = pieces[random.below(pieces.size())].offset;
  command.insert(command.begin() + static_cast<std::ptrdiff_t>(place), run.begin(), run.end());
}

/// Mixes the values of a looking walk, but for those that do not travel now.
class Digest final : public FieldVisitor {
 public:
  std::uint64_t value = 0;

  void number(const Field&, std::int64_t& number) override { mix(static_cast<std::uint64_t>(number)); }
  void real(const Field&, double& real) override { mix(std::bit_cast<std::uint64_t>(real)); }
  void text(const Field&, std::string& text) override { mix(std::hash<std::string_view>()(text)); }
  void bytes(const Field&, std::vector<std::uint8_t>& bytes) override {
    mix(std::hash<std::string_view>()(textOf(bytes)));
  }
  void beginRecord(const Field&) override {}
  void endRecord(const Field&) override {}
  std::size_t beginList(const Field&, std::size_t size) override {
    mix(size);
    return size;
  }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field& field, std::size_t size) override { return beginList(field, size); }
  void endMap(const Field&) override {}
  void beginPart(std::string_view, bool present) override { absent_ += absent_ != 0 || !present ? 1 : 0; }
  void endPart() override { absent_ -= absent_ != 0 ? 1 : 0; }

 private:
  void mix(std::uint64_t more) {
    if (absent_ == 0) value = std::rotl((value ^ more) * 0x9E3779B97F4A7C15, 29);
  }

  int absent_ = 0;  // how deep inside absent parts
};

}  // namespace

std::vector<GoldenLine> goldenLines(std::string_view folder) {
  std::vector<GoldenLine> lines;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(CP_TEST_DATA_DIR) / folder)) {
    if (entry.path().extension() != ".txt") continue;
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) {
      const std::size_t open = line.find('{'), close = line.rfind('}'), equals = line.rfind('=');
      if (line.starts_with('#') || open == std::string::npos || equals == std::string::npos || equals < close) continue;
      const std::size_t name = line.starts_with("decode-only ") ? line.find(' ') + 1 : 0;
      lines.push_back({line.substr(name, open - 1 - name), line.substr(open, close - open + 1),
                       fromHex(std::string_view(line).substr(equals + 1))});
    }
  }
  require(!lines.empty(), "the golden files are there");
  return lines;
}

std::vector<Bytes> goldenCommands() {
  std::vector<Bytes> commands;
  for (GoldenLine& line : goldenLines()) commands.push_back(std::move(line.bytes));
  return commands;
}

const CommandClass* classOf(std::span<const std::uint8_t> command) {
  if (command.size() < kFrameBytes) return nullptr;
  return CommandFactory::find(static_cast<ProcessorFamily>(command[1]), command[0]);
}

void mutateCommand(Bytes& command, Random& random) {
  const CommandClass* named = classOf(command);
  if (named == nullptr || random.oneIn(32)) {
    command = randomCommand(random);
    return;
  }
  const std::size_t way = random.below(16);
  if (way == 0) return mutateBytes(command, random);
  if (way < 3) return mutateBytes(command, random, kFrameBytes);
  if (way < 6) return changeObject(*named, command, random);
  const std::vector<Piece>& pieces = piecesOf(*CommandSchema::find(named->name()), command);
  if (pieces.empty()) return mutateBytes(command, random, kFrameBytes);
  if (way < 8) return moveFields(pieces, command, random);
  changePiece(pieces, command, random);
}

Bytes randomCommand(Random& random) {
  const auto classes = CommandFactory::classes();
  for (;;) {
    const CommandClass& named = classes[random.below(classes.size())];
    test::RandomFields values(random());
    const CommandHandle<> object(named.create());
    if (Bytes made = written(named, *object, values); !made.empty()) return made;
  }
}

std::uint64_t digestOf(const PokerCommandI& command) {
  Digest digest;
  CommandFields::of(command)->visit(command, digest);
  return digest.value;
}

void appendFrame(Bytes& stream, std::span<const std::uint8_t> command) {
  const std::size_t slot = stream.size();
  stream.resize(slot + sizeof(std::uint32_t));
  wire::storeLittleEndian(stream.data() + slot, static_cast<std::uint32_t>(command.size() + sizeof(std::uint32_t)));
  stream.insert(stream.end(), command.begin(), command.end());
}

std::uint64_t edge(std::uint64_t held, std::size_t left, Random& random) {
  switch (random.below(8)) {
    case 0:
      return 0;
    case 1:
      return UINT64_MAX >> random.below(64);
    case 2:
      return std::uint64_t{1} << random.below(64);
    case 3:
      return left + random.below(3) - 1;
    case 4:
      return held + 1;
    case 5:
      return held - 1;
    case 6:
      return random.below(256);
    default:
      return random();
  }
}

}  // namespace poker::fuzz

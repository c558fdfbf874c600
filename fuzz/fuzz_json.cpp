// A line of JSON that tells a command: refused with a clear text, or a command that can be sent, read back, and told and
// read again as the same.

#include <CommandProcessor/types/FieldJson.h>
#include <fuzz/support/Frames.h>
#include <fuzz/support/Reading.h>
#include <hostkit/Decode.h>
#include <hostkit/Encode.h>
#include <inspect/CommandFields.h>
#include <inspect/CommandJson.h>

#include <nlohmann/json.hpp>

#include <algorithm>

using namespace poker;
using namespace poker::fuzz;

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kLongestParsed = 4096;  // by the mutator

CommandHandle<> commandOf(const CommandClass& named, const JsonObject& fields, JsonSecrets secrets) {
  CommandHandle<> command(named.create());
  FieldsFromJson(fields, secrets).run([&](FieldVisitor& visitor) {
    CommandFields::of(named.name())->assign(*command, visitor);
  });
  return command;
}

bool isPrintable(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c <= 0x7E; });
}

void checkCommand(const CommandClass& named, const PokerCommandI& told) {
  static SerializeCommandBuf buffer(4096);
  static Bytes first;
  try {
    const auto frame = encodeCommand(told, buffer).subspan(4);
    first.assign(frame.begin(), frame.end());
  } catch (const EncodeError&) {
    return require(!named.fitsOnWire(told), "what fits on the wire can be sent");
  }
  const DecodePolicy strict{.receives = named.direction(), .rejectTrailing = true, .wipeSecrets = false};
  const DecodeResult read = decodeCommand(named, first, strict);
  require(static_cast<bool>(read), "what was told can be read from its bytes");
  const std::string json = commandJson(*read.command, JsonSecrets::kShow);
  require(isPrintable(json), "JSON is printable");
  const CommandHandle<> again = commandOf(named, *JsonObject(json).object("fields"), JsonSecrets::kShow);
  require(digestOf(*again) == digestOf(*read.command), "what JSON tells is what was held");
  const auto second = encodeCommand(*again, buffer).subspan(4);
  require(named.name() == "SrvPing" || std::equal(first.begin(), first.end(), second.begin(), second.end()),
          "the same values are written as the same bytes");
}

/// Replaces a value somewhere inside, or doubles or drops it.
void mutateValue(Json& root, Random& random) {
  Json* at = &root;
  Json* parent = nullptr;
  std::size_t index = 0;
  while (at->is_structured() && !at->empty() && !(parent != nullptr && random.oneIn(6))) {
    parent = at;
    index = random.below(at->size());
    auto place = at->begin();
    std::advance(place, index);
    at = &*place;
  }
  if (parent != nullptr && random.oneIn(5)) {
    if (parent->is_array() && random.oneIn(2)) {
      parent->push_back(Json(*at));
    } else if (parent->is_array()) {
      parent->erase(index);
    } else if (!at->is_null()) {
      (*parent)["another"] = *at;
    }
    return;
  }
  switch (random.below(8)) {
    case 0:
      *at = edge(0, 100, random);
      break;
    case 1:
      *at = -static_cast<std::int64_t>(edge(0, 100, random) >> 1);
      break;
    case 2:
      *at = random.oneIn(2);
      break;
    case 3:
      *at = std::to_string(edge(0, 100, random));
      break;
    case 4:
      *at = std::to_string(static_cast<std::int64_t>(edge(0, 100, random))) + '.' + std::to_string(random.below(100));
      break;
    case 5:
      *at = std::string(random.below(20), static_cast<char>(random.below(128)));
      break;
    case 6:
      *at = "0x7FF" + std::to_string(random.below(10)) + "000000000000";
      break;
    default:
      *at = random.oneIn(3) ? Json() : random.oneIn(2) ? Json(1e300) : Json::array();
  }
}

}  // namespace

std::vector<Bytes> fuzz::seeds() {
  std::vector<Bytes> made;
  for (const GoldenLine& line : goldenLines()) {
    made.push_back(bytesOf("{\"command\":\"" + line.name + "\",\"fields\":" + line.json + '}'));
  }
  return made;
}

void fuzz::mutate(Bytes& input, Random& random) {
  const std::size_t way = random.below(16);
  if (way == 0) {
    const Bytes bytes = randomCommand(random);
    const CommandClass& named = *classOf(bytes);
    const DecodePolicy lenient{.receives = named.direction(), .rejectTrailing = false, .wipeSecrets = false};
    if (const DecodeResult made = decodeCommand(named, bytes, lenient)) {
      input = bytesOf(commandJson(*made.command, JsonSecrets::kShow));
    }
    return;
  }
  if (way < 8 || input.size() > kLongestParsed) return mutateBytes(input, random);
  Json parsed = Json::parse(input, nullptr, false);
  if (parsed.is_discarded()) return mutateBytes(input, random);
  mutateValue(parsed, random);
  input = bytesOf(parsed.dump(-1, ' ', true, Json::error_handler_t::replace));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CommandHandle<> command;
  const CommandClass* named = nullptr;
  try {
    const JsonObject object(textOf({data, size}));
    const auto name = object.text("command");
    named = name ? CommandFactory::find(*name) : nullptr;
    const auto fields = object.object("fields");
    if (named == nullptr || !fields) return 0;
    command = commandOf(*named, *fields, JsonSecrets::kMask);
  } catch (const FieldValueError& error) {
    require(isPrintable(error.what()), "a problem's text holds nothing that a terminal acts on");
    return 0;
  }
  checkCommand(*named, *command);
  return 0;
}

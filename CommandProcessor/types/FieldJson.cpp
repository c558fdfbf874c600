#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

namespace poker {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kMask = "***";
constexpr std::string_view kBitsPrefix = "0x";

void appendHex(std::string& out, std::uint64_t value, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) out += "0123456789ABCDEF"[value >> shift & 0xF];
}

template <class T>
void appendDecimal(std::string& out, T value) {
  char digits[std::numeric_limits<T>::digits10 + 2];
  out.append(digits, std::to_chars(digits, std::end(digits), value).ptr);
}

/// A name out of somebody's JSON, for a problem's text, which may reach a terminal: as in JSON, without the quotes.
std::string shownName(std::string_view name) {
  std::string shown;
  appendJsonString(shown, name);
  return shown.substr(1, shown.size() - 2);
}

/// The number that the hexadecimal digits tell; none when there is anything else among them.
std::optional<std::uint64_t> parseHex(std::string_view digits) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return value;
}

/// The 8-bit text of UTF-8 that is known to be well-formed; none when a character is above U+00FF.
std::optional<std::string> latin1(std::string_view utf8) {
  std::string text;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      text += utf8[i];
    } else if (lead <= 0xC3) {
      const auto next = static_cast<unsigned char>(utf8[++i]);
      text += static_cast<char>((lead & 0x03) << 6 | (next & 0x3F));
    } else {
      return std::nullopt;
    }
  }
  return text;
}

/// The 64 bits of the T that the text is in decimal; none when it is anything else.
template <class T>
std::optional<std::int64_t> parseDecimal(std::string_view text) {
  T value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return static_cast<std::int64_t>(value);
}

/// A minus at most, digits, and behind a point one or two more. None when it is not that, or beyond 64 bits.
std::optional<RealMoneyType> parseMoney(std::string_view text) {
  const auto countDigits = [](std::string_view digits) {
    return std::min(digits.find_first_not_of("0123456789"), digits.size());
  };
  std::string_view rest = text.substr(text.starts_with('-') ? 1 : 0);
  const std::size_t whole = countDigits(rest);
  rest.remove_prefix(whole);
  if (whole == 0) return std::nullopt;
  if (!rest.empty() &&
      (rest[0] != '.' || rest.size() < 2 || rest.size() > 3 || countDigits(rest.substr(1)) + 1 != rest.size())) {
    return std::nullopt;
  }
  const auto money = RealMoneyType::fromText(text);
  // What is beyond the ends of the range comes out as one of the ends.
  const bool end = money.hundredths() == std::numeric_limits<std::int64_t>::max() ||
                   money.hundredths() == std::numeric_limits<std::int64_t>::min();
  if (end && money.toString() != text) return std::nullopt;
  return money;
}

}  // namespace

// --- writing ---------------------------------------------------------------------------------------------------------

void appendJsonString(std::string& out, std::string_view text) {
  out += '"';
  std::size_t plain = 0;  // where the characters begin that stand for themselves
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte >= 0x20 && byte <= 0x7E && byte != '"' && byte != '\\') continue;
    out.append(text, plain, i - plain);
    plain = i + 1;
    if (byte == '"' || byte == '\\') {
      out += '\\';
      out += text[i];
    } else {
      out += "\\u00";
      appendHex(out, byte, 2);
    }
  }
  out.append(text, plain);
  out += '"';
}

FieldsToJson::~FieldsToJson() = default;

std::string FieldsToJson::take() {
  object_ += '}';
  return std::exchange(object_, "{");
}

void FieldsToJson::separate() {
  if (const char last = object_.back(); last != '{' && last != '[') object_ += ',';
}

/// Elements of a list have no name.
void FieldsToJson::name(const Field& field) {
  separate();
  if (field.name.empty()) return;
  object_ += '"';
  object_ += field.name;  // an identifier: nothing in it needs an escape
  object_ += "\":";
}

/// Whether the value is to follow: a masked one does not.
bool FieldsToJson::begin(const Field& field) {
  name(field);
  const bool masked = field.secret && secrets_ == JsonSecrets::kMask;
  if (masked) appendJsonString(object_, kMask);
  return !masked;
}

void FieldsToJson::number(const Field& field, std::int64_t& value) {
  if (field.derived || !begin(field)) return;
  switch (field.type) {
    case FieldType::Bool:
      object_ += value != 0 ? "true" : "false";
      break;
    case FieldType::Money:
      appendJsonString(object_, RealMoneyType::fromHundredths(value).toString());
      break;
    case FieldType::U64:
      object_ += '"';
      appendDecimal(object_, static_cast<std::uint64_t>(value));
      object_ += '"';
      break;
    case FieldType::I64:
      object_ += '"';
      appendDecimal(object_, value);
      object_ += '"';
      break;
    default:
      appendDecimal(object_, value);
  }
}

void FieldsToJson::real(const Field& field, double& value) {
  if (!begin(field)) return;
  if (std::isfinite(value)) {
    char digits[32];  // the shortest digits that read back to the same value are 24 at most
    object_.append(digits, std::to_chars(digits, std::end(digits), value).ptr);
    if (value == 0 && std::signbit(value)) object_ += ".0";  // "-0" would be read as an integer, which has no sign at 0
  } else {
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    std::string text(kBitsPrefix);
    appendHex(text, bits, 16);
    appendJsonString(object_, text);
  }
}

void FieldsToJson::text(const Field& field, std::string& value) {
  if (begin(field)) appendJsonString(object_, value);
}

void FieldsToJson::bytes(const Field& field, std::vector<std::uint8_t>& value) {
  if (!begin(field)) return;
  object_ += '"';
  for (const std::uint8_t byte : value) appendHex(object_, byte, 2);
  object_ += '"';
}

void FieldsToJson::beginRecord(const Field& field) {
  name(field);
  object_ += '{';
}

void FieldsToJson::endRecord(const Field&) { object_ += '}'; }

std::size_t FieldsToJson::beginList(const Field& field, std::size_t size) {
  name(field);
  object_ += '[';
  return size;
}

void FieldsToJson::endList(const Field&) { object_ += ']'; }

std::size_t FieldsToJson::beginMap(const Field& field, std::size_t size) { return beginList(field, size); }

void FieldsToJson::beginEntry() {
  separate();
  object_ += '{';
}

void FieldsToJson::endEntry() { object_ += '}'; }

void FieldsToJson::endMap(const Field&) { object_ += ']'; }

// --- reading ---------------------------------------------------------------------------------------------------------

struct JsonObject::Parsed {
  Json root;
};

namespace {

const Json& jsonOf(const void* value) { return *static_cast<const Json*>(value); }

/// The member of that name; null when there is none.
const Json* memberOf(const void* object, std::string_view name) {
  const Json& json = jsonOf(object);
  const auto place = json.find(std::string(name));
  return place == json.end() ? nullptr : &*place;
}

}  // namespace

JsonObject::JsonObject(std::string_view json) {
  const auto fail = [](const std::string& problem) { throw FieldValueError({.name = "JSON"}, problem); };
  // The parser keeps one of two members of the same name: which one was meant, nobody knows.
  std::vector<std::vector<std::string>> open;
  const auto refuseTwice = [&](int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) {
      open.emplace_back();
    } else if (event == Json::parse_event_t::object_end) {
      open.pop_back();
    } else if (event == Json::parse_event_t::key) {
      const auto& name = parsed.get_ref<const std::string&>();
      if (std::find(open.back().begin(), open.back().end(), name) != open.back().end())
        fail(shownName(name) + ": stands twice");
      open.back().push_back(name);
    }
    return true;
  };
  try {
    parsed_ = std::make_shared<const Parsed>(Parsed{Json::parse(json, refuseTwice)});
  } catch (const Json::parse_error& error) {
    fail("syntax error at byte " + std::to_string(error.byte));
  } catch (const Json::exception&) {
    fail("a number is beyond what a double can hold");
  }
  if (!parsed_->root.is_object()) fail("takes an object");
  value_ = &parsed_->root;
}

bool JsonObject::has(std::string_view name) const { return memberOf(value_, name) != nullptr; }

std::optional<std::string> JsonObject::text(std::string_view name) const {
  const Json* member = memberOf(value_, name);
  if (member == nullptr || !member->is_string()) return std::nullopt;
  return member->get_ref<const std::string&>();
}

std::optional<JsonObject> JsonObject::object(std::string_view name) const {
  const Json* member = memberOf(value_, name);
  if (member == nullptr || !member->is_object()) return std::nullopt;
  return JsonObject(parsed_, member);
}

std::optional<std::vector<JsonObject>> JsonObject::objects(std::string_view name) const {
  const Json* member = memberOf(value_, name);
  if (member == nullptr || !member->is_array()) return std::nullopt;
  std::vector<JsonObject> objects;
  for (const Json& element : *member) {
    if (!element.is_object()) return std::nullopt;
    objects.push_back(JsonObject(parsed_, &element));
  }
  return objects;
}

/// The object, and where the walk stands in it.
struct FieldsFromJson::Object {
  struct Frame {
    const Json* value;
    std::string name;
    std::size_t next = 0;                   // of an array: the next element
    std::vector<const Json*> visited = {};  // of an object
  };

  JsonObject fields;
  JsonSecrets secrets;
  std::vector<Frame> frames = {};
  std::string leaf = {};  // the value visited last in the innermost frame
  std::size_t elements = 0;

  std::string path() const {
    std::string path;
    const auto append = [&](const std::string& name) {
      if (!path.empty() && !name.empty() && name[0] != '[') path += '.';
      path += name;
    };
    for (const auto& frame : frames) append(frame.name);
    append(leaf);
    return path;
  }

  [[noreturn]] void fail(const std::string& problem) const { throw FieldValueError({.name = path()}, problem); }

  const Json& find(std::string_view name) {
    Frame& frame = frames.back();
    if (frame.value->is_array()) {
      leaf = '[' + std::to_string(frame.next) + ']';
      if (frame.next == frame.value->size()) fail("is missing");
      return (*frame.value)[frame.next++];
    }
    leaf = name;
    const auto place = frame.value->find(leaf);
    if (place == frame.value->end()) fail("is missing");
    frame.visited.push_back(&*place);
    return *place;
  }

  /// Finds a value that is no container. A mask in the place of a secret is refused.
  const Json& value(const Field& field) {
    const Json& found = find(field.name);
    const bool isMask = found.is_string() && found.get_ref<const std::string&>() == kMask;
    if (field.secret && secrets == JsonSecrets::kMask && isMask) {
      fail("the secret is masked by \"***\"; decode with secrets shown");
    }
    return found;
  }

  /// As value(), for what is told by a string.
  const std::string& string(const Field& field, const char* problem) {
    const Json& found = value(field);
    if (!found.is_string()) fail(problem);
    return found.get_ref<const std::string&>();
  }

  void enter(std::string_view name, bool array) {
    const Json& found = find(name);
    if (array ? !found.is_array() : !found.is_object()) fail(array ? "takes an array" : "takes an object");
    frames.push_back({&found, std::exchange(leaf, {})});
  }

  void leave() {
    checkAllVisited();
    frames.pop_back();
    leaf.clear();
  }

  void checkAllVisited() {
    const Frame& frame = frames.back();
    if (!frame.value->is_object()) return;
    for (const auto& [key, value] : frame.value->items()) {
      if (std::find(frame.visited.begin(), frame.visited.end(), &value) != frame.visited.end()) continue;
      leaf = shownName(key);
      fail("there is no such field");
    }
  }
};

FieldsFromJson::FieldsFromJson(std::string_view json, JsonSecrets secrets)
    : FieldsFromJson(JsonObject(json), secrets) {}

FieldsFromJson::FieldsFromJson(JsonObject fields, JsonSecrets secrets)
    : object_(std::make_unique<Object>(Object{std::move(fields), secrets})) {}

FieldsFromJson::~FieldsFromJson() = default;

void FieldsFromJson::run(const std::function<void(FieldVisitor&)>& walk) {
  object_->leaf.clear();
  object_->frames.clear();
  object_->elements = 0;
  object_->frames.push_back({&jsonOf(object_->fields.value_), {}});
  try {
    walk(*this);
    object_->checkAllVisited();
  } catch (const FieldValueError& error) {
    // What the fields themselves refuse carries their name alone; this is where it is.
    object_->fail(std::string(error.problem()));
  }
}

std::size_t FieldsFromJson::elements() const { return object_->elements; }

void FieldsFromJson::number(const Field& field, std::int64_t& value) {
  if (field.derived) return;
  if (field.type == FieldType::Money) {
    const auto money = parseMoney(object_->string(field, "takes money as a string: \"12.50\""));
    if (!money) object_->fail("is no money text");
    value = money->hundredths();
    return;
  }
  const Json& found = object_->value(field);
  const bool wide = field.type == FieldType::I64 || field.type == FieldType::U64;
  if (field.type == FieldType::Bool) {
    if (!found.is_boolean()) object_->fail("takes true or false");
    value = found.get<bool>();
  } else if (wide && found.is_string()) {
    const auto& digits = found.get_ref<const std::string&>();
    const auto number =
        field.type == FieldType::I64 ? parseDecimal<std::int64_t>(digits) : parseDecimal<std::uint64_t>(digits);
    if (!number) object_->fail("is no decimal number of 64 bits");
    value = *number;
  } else {
    if (!found.is_number_integer()) object_->fail(wide ? "takes a string of decimal digits" : "takes a whole number");
    // The narrower ranges are the field's own affair.
    const bool large = found.is_number_unsigned() && found.get<std::uint64_t>() > INT64_MAX;
    const bool fits = field.type == FieldType::U64 ? found.is_number_unsigned() : !large;
    if (!fits) object_->fail(found.dump() + " is out of range for " + std::string(fieldTypeName(field)));
    value = found.get<std::int64_t>();
  }
}

void FieldsFromJson::real(const Field& field, double& value) {
  const Json& found = object_->value(field);
  if (found.is_number()) {
    value = found.get<double>();
    return;
  }
  constexpr auto kProblem = "takes a number, or its 16 hexadecimal digits after \"0x\"";
  if (!found.is_string()) object_->fail(kProblem);
  const std::string_view text = found.get_ref<const std::string&>();
  const auto bits = text.size() == 18 && text.starts_with(kBitsPrefix) ? parseHex(text.substr(2)) : std::nullopt;
  if (!bits) object_->fail(kProblem);
  std::memcpy(&value, &*bits, sizeof value);
}

void FieldsFromJson::text(const Field& field, std::string& value) {
  auto text = latin1(object_->string(field, "takes a string"));
  if (!text) object_->fail("holds a character above U+00FF");
  value = *std::move(text);
}

void FieldsFromJson::bytes(const Field& field, std::vector<std::uint8_t>& value) {
  constexpr auto kProblem = "takes a string of hexadecimal digits, two a byte";
  const std::string_view digits = object_->string(field, kProblem);
  if (digits.size() % 2 != 0) object_->fail(kProblem);
  value.clear();
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const auto byte = parseHex(digits.substr(i, 2));
    if (!byte) object_->fail(kProblem);
    value.push_back(static_cast<std::uint8_t>(*byte));
  }
}

void FieldsFromJson::beginRecord(const Field& field) { object_->enter(field.name, false); }
void FieldsFromJson::endRecord(const Field&) { object_->leave(); }

std::size_t FieldsFromJson::beginList(const Field& field, std::size_t) {
  object_->enter(field.name, true);
  const std::size_t size = object_->frames.back().value->size();
  object_->elements += size;
  return size;
}

void FieldsFromJson::endList(const Field&) { object_->leave(); }

std::size_t FieldsFromJson::beginMap(const Field& field, std::size_t size) { return beginList(field, size); }
void FieldsFromJson::beginEntry() { object_->enter({}, false); }
void FieldsFromJson::endEntry() { object_->leave(); }
void FieldsFromJson::endMap(const Field&) { object_->leave(); }

}  // namespace poker

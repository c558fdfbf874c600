#include <CommandProcessor/types/RealMoneyType.h>
#include <inspect/CommandFields.h>
#include <inspect/CommandText.h>

#include <charconv>
#include <cmath>
#include <cstring>

namespace poker {

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

/// Writes name=value, with {} around records and entries and [] around lists and maps.
class TextVisitor : public FieldVisitor {
 public:
  std::string line;

  explicit TextVisitor(JsonSecrets secrets) : secrets_(secrets) {}

  void number(const Field& field, std::int64_t& value) override {
    if (field.derived || !begin(field)) return;
    if (isMasked(field)) {
      line += kSecret;
    } else if (field.type == FieldType::Bool) {
      line += value != 0 ? "true" : "false";
    } else if (field.type == FieldType::Money) {
      line += RealMoneyType::fromHundredths(value).toString();
    } else if (field.type == FieldType::U64) {
      line += std::to_string(static_cast<std::uint64_t>(value));
    } else {
      line += std::to_string(value);
    }
  }
  void real(const Field& field, double& value) override {
    if (!begin(field)) return;
    if (!std::isfinite(value)) {  // the bits of one that is no number may tell something
      std::uint64_t bits;
      std::memcpy(&bits, &value, sizeof bits);
      line += "0x";
      for (int shift = 60; shift >= 0; shift -= 4) line += kHexDigits[bits >> shift & 15];
      return;
    }
    char digits[32];
    line.append(digits, std::to_chars(digits, std::end(digits), value).ptr);
  }
  void text(const Field& field, std::string& value) override {
    if (!begin(field)) return;
    line += isMasked(field) ? kSecret : quoted(value);
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override {
    if (!begin(field)) return;
    line += isMasked(field) ? kSecret : '<' + bytesAsText(value, kMostBytes) + '>';
  }
  void beginRecord(const Field& field) override { open(field, '{'); }
  void endRecord(const Field&) override { close('}'); }
  std::size_t beginList(const Field& field, std::size_t size) override {
    open(field, '[');
    return size;
  }
  void endList(const Field&) override { close(']'); }
  std::size_t beginMap(const Field& field, std::size_t size) override { return beginList(field, size); }
  void beginEntry() override { open({}, '{'); }
  void endEntry() override { close('}'); }
  void endMap(const Field&) override { close(']'); }
  void beginPart(std::string_view, bool present) override { absent_ += absent_ != 0 || !present ? 1 : 0; }
  void endPart() override { absent_ -= absent_ != 0 ? 1 : 0; }

 private:
  static constexpr const char* kSecret = "***";
  static constexpr std::size_t kMostBytes = 16;

  bool isMasked(const Field& field) const { return field.secret && secrets_ == JsonSecrets::kMask; }
  /// Starts a field, unless it is absent.
  bool begin(const Field& field) {
    if (absent_ != 0) return false;
    if (!line.empty() && line.back() != '{' && line.back() != '[') line += ' ';
    if (!field.name.empty()) line.append(field.name) += '=';
    return true;
  }
  void open(const Field& field, char bracket) {
    if (begin(field)) line += bracket;
  }
  void close(char bracket) {
    if (absent_ == 0) line += bracket;
  }

  JsonSecrets secrets_;
  int absent_ = 0;  // how deep inside absent parts
};

}  // namespace

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte > 0x7E) {
      if (c == '\n') {
        result += "\\n";
      } else {
        result.append("\\x") += kHexDigits[byte >> 4];
        result += kHexDigits[byte & 15];
      }
    } else {
      if (c == '"' || c == '\\') result += '\\';
      result += c;
    }
  }
  return result += '"';
}

std::string bytesAsText(std::span<const std::uint8_t> bytes, std::size_t most) {
  std::string result;
  for (const std::uint8_t byte : bytes.first(std::min(most, bytes.size()))) {
    if (!result.empty()) result += ' ';
    result += kHexDigits[byte >> 4];
    result += kHexDigits[byte & 15];
  }
  if (bytes.size() > most) result += " ... " + std::to_string(bytes.size()) + " bytes";
  return result;
}

std::string moneyText(const RealMoneyType& amount) {
  const bool negative = amount.hundredths() < 0;
  const auto bits = static_cast<std::uint64_t>(amount.hundredths());
  const std::uint64_t hundredths = negative ? 0 - bits : bits;
  std::string text = negative ? "-" : "";
  text.append(std::to_string(hundredths / 100)).append(hundredths % 100 < 10 ? ".0" : ".");
  return text.append(std::to_string(hundredths % 100));
}

std::string cardText(const Card& card) {
  constexpr std::string_view kRanks = "?A23456789TJQKA";
  constexpr std::string_view kSuits = "?cdhs";
  const auto rank = static_cast<std::size_t>(card.rank());
  const auto suit = static_cast<std::size_t>(card.suit());
  if (card.visibility() == Card::Visibility::Hidden || rank >= kRanks.size() || suit >= kSuits.size()) return "??";
  return {kRanks[rank], kSuits[suit]};
}

std::string fieldsAsText(const PokerCommandI& command, JsonSecrets secrets) {
  TextVisitor visitor(secrets);
  if (const CommandFields* fields = CommandFields::of(command)) fields->visit(command, visitor);
  return std::move(visitor.line);
}

}  // namespace poker

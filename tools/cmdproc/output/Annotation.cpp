#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/types/Card.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/wire/WireNumber.h>
#include <hostkit/CommandFactory.h>
#include <hostkit/StreamFramer.h>
#include <inspect/CommandText.h>
#include <inspect/schema/SchemaJson.h>
#include <inspect/schema/WireWalk.h>
#include <tools/cmdproc/output/Annotation.h>

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace poker::cmdproc {

namespace {

constexpr std::size_t kBytesShown = 8;
constexpr std::size_t kTextShown = 40;

std::string row(std::uint64_t offset, std::string_view bytes, std::string_view type, std::string_view value,
                std::string_view meaning) {
  std::string line = fmt::format("{:>8} | {:<27} | {:<16} | {:<29} | {}", offset, bytes, type, value, meaning);
  line.erase(line.find_last_not_of(' ') + 1);
  return line += '\n';
}

std::string shortened(std::span<const std::uint8_t> bytes) {
  if (bytes.size() <= kBytesShown) return bytesAsText(bytes);
  return bytesAsText(bytes.first(kBytesShown)) + " ..";
}

std::string realText(double value) {
  if (!std::isfinite(value)) return fmt::format("0x{:016X}", std::bit_cast<std::uint64_t>(value));
  char digits[32];
  return {digits, std::to_chars(digits, std::end(digits), value).ptr};
}

std::string flagsText(const SchemaField& field, std::uint8_t byte) {
  std::string text;
  for (const SchemaField& flag : field.fields) {
    if ((byte & flag.mask) != 0) text += (text.empty() ? "" : ", ") + flag.name;
  }
  return text.empty() ? "none" : text;
}

std::string cardByteText(std::uint8_t byte) {
  const Card card = Card::fromByte(byte);
  if (card.visibility() == Card::Visibility::Hidden) return "hidden";
  return cardText(card) + (card.visibility() == Card::Visibility::HiddenOwner ? ", for its owner" : "");
}

std::string dateText(double days) { return realText(days) + ' ' + COleDateTime(days).toIsoString(); }

std::string numberText(FieldType type, const WirePiece& piece) {
  switch (type) {
    case FieldType::Bool:
      return piece.number() != 0 ? "true" : "false";
    case FieldType::Money:
      return RealMoneyType::fromHundredths(piece.number()).toString();
    case FieldType::U64:
      return std::to_string(static_cast<std::uint64_t>(piece.number()));
    case FieldType::Double:
      return realText(std::bit_cast<double>(piece.bits()));
    case FieldType::DateTime:
      return dateText(std::bit_cast<double>(piece.bits()));
    default:
      return std::to_string(piece.number());
  }
}

std::string textValue(std::string_view text) {
  if (text.size() <= kTextShown) return quoted(text);
  return quoted(text.substr(0, kTextShown)) + "..";
}

std::string valueText(const WirePiece& piece) {
  const SchemaField& field = *piece.field;
  if (piece.isCount) return numberText(piece.type(), piece);
  switch (field.type) {
    case FieldType::String:
      return textValue(piece.text());
    case FieldType::Bytes:
      return fmt::format("{} bytes", piece.bytes.size());
    case FieldType::Zeros:
      return {};
    case FieldType::Record:
      return field.isCard() ? cardByteText(piece.bytes[0]) : flagsText(field, piece.bytes[0]);
    default:
      return numberText(field.type, piece);
  }
}

std::string meaningOf(const WirePiece& piece) {
  const SchemaField& field = *piece.field;
  std::string meaning(piece.path);
  if (piece.isCount) meaning = (field.type == FieldType::Bytes ? "size of " : "count of ") + meaning;
  if (field.type == FieldType::Zeros) return "zeros that carry nothing";
  if (field.derived && !field.when.empty()) return meaning + ", computed, when " + field.when;
  if (field.derived) return meaning + ", computed from other fields";
  if (!field.when.empty()) meaning += ", when " + field.when;
  return meaning;
}

class Rows {
 public:
  Rows(const CapturedFrame& frame, JsonSecrets secrets, const Paint& paint)
      : frame_(frame), secrets_(secrets), paint_(paint) {}

  std::string take() { return std::move(text_); }

  /// Length slot, type code, family.
  /// @return the class that they name; null when they do not, or are not there
  const CommandSchema* frame() {
    const auto bytes = frame_.bytes;
    if (bytes.size() < kShortestFrame) {
      text_ += row(frame_.offset, shortened(bytes), "", "", "no whole frame");
      return nullptr;
    }
    const auto length = wire::loadLittleEndian<std::uint32_t>(bytes.data());
    const auto family = static_cast<ProcessorFamily>(bytes[kLengthSlot + 1]);
    const CommandClass* named = CommandFactory::find(family, bytes[kLengthSlot]);
    text_ += row(frame_.offset, bytesAsText(bytes.first(kLengthSlot)), "u32", std::to_string(length),
                 "length of the frame, this number included");
    text_ += row(frame_.offset + kLengthSlot, bytesAsText(bytes.subspan(kLengthSlot, 1)), "byte",
                 std::to_string(bytes[kLengthSlot]),
                 named == nullptr ? "type code, unknown in its family" : fmt::format("type code: {}", named->name()));
    text_ += row(frame_.offset + kLengthSlot + 1, bytesAsText(bytes.subspan(kLengthSlot + 1, 1)), "byte",
                 std::to_string(bytes[kLengthSlot + 1]), "family");
    return named == nullptr ? nullptr : CommandSchema::find(named->name());
  }

  void fields(const CommandSchema& schema, std::string_view message) {
    const auto command = frame_.bytes.subspan(kLengthSlot);
    const auto failure = walkCommand(schema, command, [this](const WirePiece& piece) { add(piece); });
    if (!failure) {
      if (!message.empty()) text_ += "         " + paint_.alarm(fmt::format("! {}", message)) + '\n';
      return;
    }
    const std::uint64_t offset = frame_.offset + kLengthSlot + failure->offset;
    // What is left of a class with secrets may hold one.
    const bool masked = secrets_ == JsonSecrets::kMask && schema.hasSecrets();
    text_ += row(offset, masked ? "***" : shortened(command.subspan(failure->offset)),
                 failure->field == nullptr ? "" : typeText(*failure->field), "!",
                 (failure->path.empty() ? "" : failure->path + ": ") + failure->problem);
    const std::string end = fmt::format("^ {} fails here, at offset {} with {} bytes remaining{}{}", schema.name(),
                                        offset, failure->remaining, message.empty() ? "" : ": ", message);
    text_ += "         " + paint_.alarm(end) + '\n';
  }

  /// A frame whose fields nobody knows.
  void rest() {
    const auto bytes = frame_.bytes.subspan(std::min<std::size_t>(kShortestFrame, frame_.bytes.size()));
    if (bytes.empty()) return;
    text_ += row(frame_.offset + kShortestFrame, shortened(bytes), "bytes", fmt::format("{} bytes", bytes.size()),
                 "the rest of the frame");
  }

 private:
  void add(const WirePiece& piece) {
    const SchemaField& field = *piece.field;
    const bool masked = field.secret && !piece.isCount && secrets_ == JsonSecrets::kMask;
    const std::string type = piece.isCount ? std::string(fieldTypeName(piece.type())) : typeText(field);
    text_ += row(frame_.offset + kLengthSlot + piece.offset, masked ? "***" : shortened(piece.bytes), type,
                 masked ? "***" : valueText(piece), meaningOf(piece));
  }

  const CapturedFrame& frame_;
  JsonSecrets secrets_;
  const Paint& paint_;
  std::string text_;
};

}  // namespace

std::string annotate(const CapturedFrame& frame, JsonSecrets secrets, const Paint& paint, std::string_view message) {
  Rows rows(frame, secrets, paint);
  if (const CommandSchema* schema = rows.frame()) {
    rows.fields(*schema, message);
  } else {
    rows.rest();
  }
  return rows.take();
}

std::string annotationHead(const Paint& paint) {
  const std::string head =
      fmt::format("{:>8} | {:<27} | {:<16} | {:<29} | {}", "offset", "bytes", "type", "value", "meaning");
  const std::string line = fmt::format("{:->8}-+-{:->27}-+-{:->16}-+-{:->29}-+-{:->24}", "", "", "", "", "");
  return paint.aside(head) + '\n' + paint.aside(line) + '\n';
}

}  // namespace poker::cmdproc

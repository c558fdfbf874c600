#include <inspect/capture/Redact.h>
#include <inspect/schema/WireWalk.h>

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <vector>

namespace poker {

namespace {

constexpr std::size_t kLengthSlot = 4;
constexpr std::size_t kShortestFrame = kLengthSlot + 2;

bool hasSecret(const std::vector<SchemaField>& fields) {
  return std::any_of(fields.begin(), fields.end(),
                     [](const SchemaField& field) { return field.secret || hasSecret(field.fields); });
}

std::uint16_t pairOf(ProcessorFamily family, std::uint8_t code) {
  return static_cast<std::uint16_t>(static_cast<unsigned>(family) << 8 | code);
}

/// The classes with secrets, by family and code.
const std::unordered_multimap<std::uint16_t, const CommandSchema*>& secretClasses() {
  static const auto classes = [] {
    std::unordered_multimap<std::uint16_t, const CommandSchema*> found;
    for (const CommandSchema& schema : CommandSchema::all()) {
      if (!hasSecret(schema.fields)) continue;
      found.emplace(pairOf(schema.description->family, schema.description->code), &schema);
    }
    return found;
  }();
  return classes;
}

void redactAs(const CommandSchema& schema, std::span<std::uint8_t> command) {
  const auto hide = [&](std::size_t offset, std::size_t size) {
    std::fill_n(command.begin() + static_cast<std::ptrdiff_t>(offset), size, std::uint8_t{'*'});
  };
  std::size_t firstText = command.size();
  const auto failure = walkCommand(schema, command, [&](const WirePiece& piece) {
    const bool isText = piece.field->type == FieldType::String;
    if (piece.isCount || (!isText && piece.field->type != FieldType::Bytes)) return;
    firstText = std::min(firstText, piece.offset);
    if (piece.field->secret) hide(piece.offset, piece.bytes.size() - (isText ? 1 : 0));
  });
  if (!failure) return;
  const std::size_t from = std::min(firstText, failure->offset);
  hide(from, command.size() - from);
}

}  // namespace

void redactSecrets(std::span<std::uint8_t> frame) {
  if (frame.size() < kShortestFrame) return;
  const std::span<std::uint8_t> command = frame.subspan(kLengthSlot);
  const auto [first, last] = secretClasses().equal_range(pairOf(static_cast<ProcessorFamily>(command[1]), command[0]));
  for (auto schema = first; schema != last; ++schema) redactAs(*schema->second, command);
}

}  // namespace poker

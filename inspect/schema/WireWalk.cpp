#include <CommandProcessor/wire/WireNumber.h>
#include <inspect/schema/WireWalk.h>

#include <algorithm>
#include <cstring>

namespace poker {

namespace {

constexpr std::size_t kFrameBytes = 2;  // type code, family

std::uint64_t littleEndian(std::span<const std::uint8_t> bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) value |= std::uint64_t{bytes[i]} << 8 * i;
  return value;
}

std::int64_t numberOf(FieldType type, std::span<const std::uint8_t> bytes) {
  const std::uint64_t value = littleEndian(bytes);
  if (!isSigned(type) || bytes.size() == 8) return static_cast<std::int64_t>(value);
  const auto unused = static_cast<int>(64 - 8 * bytes.size());
  return static_cast<std::int64_t>(value << unused) >> unused;
}

class Walk {
 public:
  Walk(std::span<const std::uint8_t> command, const std::function<void(const WirePiece&)>& piece)
      : command_(command), piece_(piece) {}

  /// @return false when the bytes cannot be read on: failure() says why
  bool record(const std::vector<SchemaField>& fields) {
    const std::size_t outer = numbers_.size();
    const bool whole = std::all_of(fields.begin(), fields.end(), [&](const SchemaField& field) {
      if (!travels(field)) return true;
      const Name name(path_, field.name);
      return value(field);
    });
    numbers_.resize(outer);
    return whole;
  }

  bool atEnd() {
    if (left() == 0) return true;
    return fail(nullptr, std::to_string(left()) + " bytes are left behind the last field");
  }

  WireFailure takeFailure() { return std::move(failure_); }

 private:
  struct Number {
    std::string_view name;
    std::uint64_t value;
  };

  /// Adds a name to the path while it lives.
  class Name {
   public:
    Name(std::string& path, std::string_view name) : path_(path), size_(path.size()) {
      if (!path.empty() && !name.empty()) path += '.';
      path += name;
    }
    Name(std::string& path, std::size_t index) : path_(path), size_(path.size()) {
      path.append("[").append(std::to_string(index)) += ']';
    }
    ~Name() { path_.resize(size_); }
    Name(const Name&) = delete;
    Name& operator=(const Name&) = delete;

   private:
    std::string& path_;
    std::size_t size_;
  };

  std::size_t left() const { return command_.size() - position_; }

  bool travels(const SchemaField& field) const {
    return std::all_of(field.conditions.begin(), field.conditions.end(),
                       [&](const FieldCondition& condition) { return condition.holds(numberNamed(condition.field)); });
  }

  /// The value of the nearest earlier number of that name, inner records first.
  std::uint64_t numberNamed(std::string_view name) const {
    const auto found =
        std::find_if(numbers_.rbegin(), numbers_.rend(), [&](const Number& number) { return number.name == name; });
    return found == numbers_.rend() ? 0 : found->value;
  }

  bool value(const SchemaField& field) {
    switch (field.type) {
      case FieldType::String:
        return text(field);
      case FieldType::Bytes: {
        std::uint64_t size = field.size;
        return (!field.count || count(field, size)) && take(field, size);
      }
      case FieldType::Zeros:
        return take(field, field.size);
      case FieldType::List:
        return list(field);
      case FieldType::Map:
        return map(field);
      case FieldType::Record:
        if (field.isPacked()) return take(field, field.size);
        // A date-time and its status are read in one piece, or not at all.
        return (!field.isDateTimeStatus() || require(field, field.size)) && record(field.fields);
      default: {
        const std::size_t start = position_;
        if (!take(field, widthOf(field.type))) return false;
        const auto number = numberOf(field.type, command_.subspan(start, position_ - start));
        numbers_.push_back({field.name, static_cast<std::uint64_t>(number)});
        return true;
      }
    }
  }

  bool require(const SchemaField& field, std::uint64_t size) {
    if (left() >= size) return true;
    return fail(&field, "takes " + std::to_string(size) + " bytes, " + std::to_string(left()) + " are left");
  }

  bool take(const SchemaField& field, std::uint64_t size, bool isCount = false) {
    if (!require(field, size)) return false;
    const std::size_t offset = position_;
    position_ += static_cast<std::size_t>(size);
    piece_({.field = &field,
            .path = path_,
            .offset = offset,
            .bytes = command_.subspan(offset, static_cast<std::size_t>(size)),
            .isCount = isCount});
    return true;
  }

  bool text(const SchemaField& field) {
    if (left() == 0) return fail(&field, "takes a string, no bytes are left");
    const void* nul = std::memchr(command_.data() + position_, 0, left());
    if (nul == nullptr) return fail(&field, "has no NUL at its end");
    const auto size = static_cast<std::size_t>(static_cast<const std::uint8_t*>(nul) - (command_.data() + position_));
    if (field.size != 0 && size > field.size) {
      return fail(&field, "has " + std::to_string(size) + " characters, room is for " + std::to_string(field.size));
    }
    return take(field, size + 1);
  }

  /// Reads the number in front of the field's elements.
  bool count(const SchemaField& field, std::uint64_t& count) {
    const std::size_t start = position_;
    const std::uint32_t width = widthOf(*field.count);
    if (!take(field, width, true)) return false;
    const std::int64_t number = numberOf(*field.count, command_.subspan(start, width));
    // A negative one is believed as little as one that is too large.
    count = number >= 0 ? static_cast<std::uint64_t>(number) : field.belowOneIsNone ? 0 : UINT32_MAX;
    if (field.most != 0 && count > field.most) {
      return fail(&field, "has " + std::to_string(count) + " elements, the most is " + std::to_string(field.most));
    }
    return true;
  }

  bool list(const SchemaField& field) {
    std::uint64_t elements = 0;
    if (!field.count) {
      elements = numberNamed(field.countedBy);
    } else if (!count(field, elements)) {
      return false;
    }
    for (std::uint64_t i = 0; i < elements; ++i) {
      const Name index(path_, static_cast<std::size_t>(i));
      if (!value(field.fields[0])) return false;
    }
    return true;
  }

  bool map(const SchemaField& field) {
    std::uint64_t entries = 0;
    if (!count(field, entries)) return false;
    for (std::uint64_t i = 0; i < entries; ++i) {
      const Name index(path_, static_cast<std::size_t>(i));
      if (!record(field.fields)) return false;
    }
    return true;
  }

  bool fail(const SchemaField* field, std::string problem) {
    failure_ = {.path = path_, .field = field, .offset = position_, .remaining = left(), .problem = std::move(problem)};
    return false;
  }

  std::span<const std::uint8_t> command_;
  const std::function<void(const WirePiece&)>& piece_;
  std::size_t position_ = kFrameBytes;
  std::string path_;
  std::vector<Number> numbers_;  // that were read in the records that are open
  WireFailure failure_{};
};

}  // namespace

std::int64_t WirePiece::number() const { return numberOf(type(), bytes); }

std::uint64_t WirePiece::bits() const { return littleEndian(bytes); }

std::string_view WirePiece::text() const {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.empty() ? 0 : bytes.size() - 1};
}

std::optional<WireFailure> walkCommand(const CommandSchema& schema, std::span<const std::uint8_t> command,
                                       const std::function<void(const WirePiece&)>& piece) {
  if (command.size() < kFrameBytes) {
    return WireFailure{.path = {}, .field = nullptr, .offset = 0, .remaining = command.size(), .problem = "no frame"};
  }
  Walk walk(command, piece);
  if (walk.record(schema.fields) && walk.atEnd()) return std::nullopt;
  return walk.takeFailure();
}

}  // namespace poker

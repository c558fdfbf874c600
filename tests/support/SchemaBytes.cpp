#include <tests/support/SchemaBytes.h>

#include <algorithm>
#include <bit>
#include <map>
#include <random>
#include <string_view>

namespace poker::test {
namespace {

class Filler {
 public:
  explicit Filler(const SchemaFill& fill) : fill_(fill) {}

  std::vector<std::uint8_t> run(const CommandSchema& schema) {
    number(schema.description->code, 1);
    number(static_cast<std::uint8_t>(schema.description->family), 1);
    findConditions(schema.fields);
    record(schema.fields, 0);
    return std::move(bytes_);
  }

 private:
  /// Values that let conditional parts be there.
  void findConditions(const std::vector<SchemaField>& fields) {
    for (const SchemaField& field : fields) {
      for (const FieldCondition& condition : field.conditions) {
        if (condition.test == FieldCondition::Test::IsFalse) {
          given_[condition.field] = 0;
        } else {
          given_[condition.field] |= condition.test == FieldCondition::Test::Has ? condition.bits : 1;
        }
      }
      if (!field.countedBy.empty()) given_[field.countedBy] = fill_.elements;
      findConditions(field.fields);
    }
  }

  void record(const std::vector<SchemaField>& fields, std::uint64_t rank) {
    for (const SchemaField& field : fields) value(field, rank);
  }

  void value(const SchemaField& field, std::uint64_t rank) {
    switch (field.type) {
      case FieldType::String:
        text(field, rank);
        break;
      case FieldType::Bytes:
        if (field.count) number(fill_.text, widthOf(*field.count));
        bytes_.resize(bytes_.size() + (field.count ? fill_.text : field.size), static_cast<std::uint8_t>(rank));
        break;
      case FieldType::Zeros:
        bytes_.resize(bytes_.size() + field.size);
        break;
      case FieldType::List:
      case FieldType::Map:
        elements(field);
        break;
      case FieldType::Record:
        if (field.isPacked())
          number(rank, field.size);
        else
          record(field.fields, rank);
        break;
      case FieldType::Double:
      case FieldType::DateTime:
        number(std::bit_cast<std::uint64_t>(static_cast<double>(rank)), 8);
        break;
      default: {
        const auto given = given_.find(field.name);
        number(given != given_.end()           ? given->second
               : field.type == FieldType::Bool ? rank % 2
                                               : rank,
               widthOf(field.type));
      }
    }
  }

  void elements(const SchemaField& field) {
    std::size_t size = depth_ == 0 ? fill_.elements : 2;
    if (field.count) {
      const std::uint32_t width = widthOf(*field.count);
      if (width < 4) size = std::min<std::size_t>(size, isSigned(*field.count) ? 0x7F : (1u << 8 * width) - 1);
      number(size, width);
    }
    ++depth_;
    for (std::size_t i = 0; i < size; ++i) {
      const std::uint64_t rank = fill_.order == Order::Ascending    ? i + 300
                                 : fill_.order == Order::Descending ? size - i + 300
                                 : fill_.order == Order::Equal      ? 7
                                                                    : random_() % 65'000;
      record(field.fields, rank);
    }
    --depth_;
  }

  void text(const SchemaField& field, std::uint64_t rank) {
    std::vector<std::uint8_t> characters;  // the number's digits: short, no two alike, never a NUL
    for (std::uint64_t left = rank; left != 0; left /= 255) {
      characters.insert(characters.begin(), static_cast<std::uint8_t>(1 + left % 255));
    }
    characters.resize(characters.size() + fill_.text, 'x');
    if (field.size != 0) characters.resize(std::min<std::size_t>(characters.size(), field.size));
    bytes_.insert(bytes_.end(), characters.begin(), characters.end());
    bytes_.push_back(0);
  }

  void number(std::uint64_t value, std::uint32_t width) {
    for (std::uint32_t i = 0; i < width; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
  }

  const SchemaFill& fill_;
  std::map<std::string_view, std::uint64_t> given_;
  std::vector<std::uint8_t> bytes_;
  std::size_t depth_ = 0;
  std::mt19937_64 random_{1};
};

}  // namespace

std::vector<std::uint8_t> schemaBytes(const CommandSchema& schema, const SchemaFill& fill) {
  return Filler(fill).run(schema);
}

}  // namespace poker::test

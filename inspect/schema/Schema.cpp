#include <inspect/CommandFields.h>
#include <inspect/schema/Schema.h>

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <unordered_map>

namespace poker {

namespace {

/// Reads what a field list says: "empty is false", "mask has 0x100".
FieldCondition parseCondition(std::string_view words) {
  using Test = FieldCondition::Test;
  const auto fail = [&] { throw std::logic_error("no condition: " + std::string(words)); };
  const std::size_t blank = words.find(' ');
  if (blank == 0 || blank == std::string_view::npos) fail();
  FieldCondition condition{.field = std::string(words.substr(0, blank))};
  const std::string_view test = words.substr(blank + 1);
  constexpr std::string_view kHas = "has 0x";
  if (test == "is true") {
    condition.test = Test::IsTrue;
  } else if (test == "is false") {
    condition.test = Test::IsFalse;
  } else if (test.starts_with(kHas)) {
    condition.test = Test::Has;
    const std::string_view digits = test.substr(kHas.size());
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), condition.bits, 16);
    if (error != std::errc() || end != digits.data() + digits.size()) fail();
  } else {
    fail();
  }
  return condition;
}

/// Writes down what a describing walk shows: one element of each list and map, all parts.
class SchemaVisitor : public FieldVisitor {
 public:
  explicit SchemaVisitor(std::vector<SchemaField>& fields) : open_{&fields} {}

  void number(const Field& field, std::int64_t&) override { add(field); }
  void real(const Field& field, double&) override { add(field); }
  void text(const Field& field, std::string&) override { add(field); }
  void bytes(const Field& field, std::vector<std::uint8_t>&) override { add(field); }
  void zeros(const Field& field) override { add(field); }
  void beginRecord(const Field& field) override { enter(field); }
  void endRecord(const Field&) override { leave(); }
  std::size_t beginList(const Field& field, std::size_t) override {
    enter(field);
    return 1;
  }
  void endList(const Field&) override { leave(); }
  std::size_t beginMap(const Field& field, std::size_t) override { return beginList(field, 0); }
  void endMap(const Field&) override { leave(); }
  void beginPart(std::string_view when, bool) override {
    parts_.push_back({open_.size(), std::string(when), parseCondition(when)});
  }
  void endPart() override { parts_.pop_back(); }

 private:
  struct Part {
    std::size_t depth;  // of the fields that it concerns; deeper ones are inside of them
    std::string when;
    FieldCondition condition;
  };

  SchemaField& add(const Field& field) {
    SchemaField& added = open_.back()->emplace_back();
    added.name = field.name;
    added.type = field.type;
    added.typeName = field.typeName;
    added.size = field.size;
    added.count = field.count;
    added.belowOneIsNone = field.belowOneIsNone;
    added.most = field.most;
    added.countedBy = field.countedBy;
    added.mask = field.mask;
    added.derived = field.derived;
    added.secret = field.secret;
    for (const Part& part : parts_) {
      if (part.depth != open_.size()) continue;
      added.when += (added.when.empty() ? "" : " and ") + part.when;
      added.conditions.push_back(part.condition);
    }
    return added;
  }
  void enter(const Field& field) { open_.push_back(&add(field).fields); }
  void leave() { open_.pop_back(); }

  std::vector<std::vector<SchemaField>*> open_;
  std::vector<Part> parts_;
};

bool anySecret(const std::vector<SchemaField>& fields) {
  return std::any_of(fields.begin(), fields.end(),
                     [](const SchemaField& field) { return field.secret || anySecret(field.fields); });
}

CommandSchema schemaOf(const CommandDescription& description) {
  CommandSchema schema{&description, {}};
  const CommandFields* row = CommandFields::of(description.name);
  if (row == nullptr) throw std::logic_error("no fields of " + std::string(description.name));
  PokerCommandI& sample = row->create();
  SchemaVisitor visitor(schema.fields);
  row->visit(sample, visitor);
  sample.release();
  return schema;
}

}  // namespace

bool CommandSchema::hasSecrets() const { return anySecret(fields); }

std::span<const CommandSchema> CommandSchema::all() {
  static const std::vector<CommandSchema> schemas = [] {
    std::vector<CommandSchema> made;
    for (const CommandDescription& row : commandCatalogue()) made.push_back(schemaOf(row));
    return made;
  }();
  return schemas;
}

const CommandSchema* CommandSchema::find(std::string_view name) {
  static const auto byName = [] {
    std::unordered_map<std::string_view, const CommandSchema*> rows;
    for (const CommandSchema& schema : all()) rows.emplace(schema.name(), &schema);
    return rows;
  }();
  const auto row = byName.find(name);
  return row == byName.end() ? nullptr : row->second;
}

std::uint32_t widthOf(FieldType type) {
  switch (type) {
    case FieldType::Byte:
    case FieldType::Bool:
      return 1;
    case FieldType::U16:
    case FieldType::I16:
      return 2;
    case FieldType::U32:
    case FieldType::I32:
      return 4;
    case FieldType::U64:
    case FieldType::I64:
    case FieldType::Double:
    case FieldType::Money:
    case FieldType::DateTime:
      return 8;
    default:
      return 0;
  }
}

bool isSigned(FieldType type) {
  return type == FieldType::I16 || type == FieldType::I32 || type == FieldType::I64 || type == FieldType::Money;
}

}  // namespace poker

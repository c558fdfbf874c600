#include <CommandProcessor/wire/FieldVisitor.h>

namespace poker {

FieldVisitor::~FieldVisitor() = default;
void FieldVisitor::zeros(const Field&) {}
void FieldVisitor::beginEntry() {}
void FieldVisitor::endEntry() {}
void FieldVisitor::beginPart(std::string_view, bool) {}
void FieldVisitor::endPart() {}

FieldValueError::FieldValueError(const Field& field, const std::string& problem)
    : std::out_of_range(std::string(field.name.empty() ? "element" : field.name) + ": " + problem),
      problem_(std::string_view(what()).size() - problem.size()) {}

FieldValueError::~FieldValueError() = default;

void checkFieldRange(const Field& field, std::int64_t value, std::int64_t least, std::int64_t most) {
  if (value >= least && value <= most) return;
  throw FieldValueError(field, std::to_string(value) + " is out of range for " + std::string(fieldTypeName(field)));
}

std::string_view fieldTypeName(FieldType type) {
  constexpr std::string_view kNames[] = {"byte",  "bool",  "u16",    "i16",   "u32",       "i32",
                                         "u64",   "i64",   "double", "money", "date-time", "string",
                                         "bytes", "zeros", "list",   "map",   "record"};
  return kNames[static_cast<std::size_t>(type)];
}

std::string_view fieldTypeName(const Field& field) {
  return field.type == FieldType::Record ? field.typeName : fieldTypeName(field.type);
}

}  // namespace poker

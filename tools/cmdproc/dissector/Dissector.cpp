#include <CommandProcessor/core/Catalogue.h>
#include <hostkit/CommandFactory.h>
#include <tools/cmdproc/dissector/Dissector.h>
#include <tools/cmdproc/embedded/EmbeddedFiles.h>

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>
#include <stdexcept>

namespace poker::cmdproc {

namespace {

// Where the run time expects the table.
constexpr std::string_view kPlace = "local COMMANDS = {} --@commands@\n";

bool isUpper(char c) { return std::isupper(static_cast<unsigned char>(c)) != 0; }
bool isLower(char c) { return std::islower(static_cast<unsigned char>(c)) != 0; }

bool endsInAnyOf(std::string_view key, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
    return key.ends_with(word) && (key.size() == word.size() || key[key.size() - word.size() - 1] == '_');
  });
}

/// Writes the entry of one command.
class TableWriter {
 public:
  explicit TableWriter(std::string& out) : out_(out) {}

  void command(const CommandSchema& schema) {
    keep_.clear();
    collectKept(schema.fields);
    const CommandDescription& row = *schema.description;
    append("  {{ name = \"{}\", key = \"{}\", family = {}, code = {}{}, fields = {{", row.name, snakeCase(row.name),
           static_cast<unsigned>(row.family), row.code,
           schema.name() == CommandInfo<SrvCompressedCommands>::name ? ", batch = true" : "");
    fields(schema.fields, nullptr, 4);
    out_ += schema.fields.empty() ? "} },\n" : "  } },\n";
  }

 private:
  template <class... Arguments>
  void append(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    fmt::format_to(std::back_inserter(out_), format, std::forward<Arguments>(arguments)...);
  }

  /// The names of all numbers that a field hangs on.
  void collectKept(const std::vector<SchemaField>& fields) {
    for (const SchemaField& field : fields) {
      for (const FieldCondition& condition : field.conditions) keep_.insert(condition.field);
      if (!field.countedBy.empty()) keep_.insert(field.countedBy);
      collectKept(field.fields);
    }
  }

  void fields(const std::vector<SchemaField>& fields, const SchemaField* container, int indent) {
    if (fields.empty()) return;
    out_ += '\n';
    for (const SchemaField& each : fields) field(each, container, indent);
  }

  void field(const SchemaField& field, const SchemaField* container, int indent) {
    append("{:{}}{{ name = \"{}\", key = \"{}\", type = \"{}\"", "", indent, field.name, snakeCase(field.name),
           typeOf(field));
    if (field.size != 0) append(", size = {}", field.size);
    if (field.count) append(", count = \"{}\"", countOf(field));
    if (field.belowOneIsNone) out_ += ", below_one = true";
    if (field.most != 0) append(", most = {}", field.most);
    if (!field.countedBy.empty()) append(", counted = \"{}\"", field.countedBy);
    if (field.mask != 0) append(", mask = {}", field.mask);
    if (field.secret) out_ += ", secret = true";
    if (isKept(field)) out_ += ", keep = true";
    if (!field.conditions.empty()) conditions(field.conditions);
    if (const std::string_view shared = sharedFilter(field, container); !shared.empty()) {
      append(", shared = \"{}\"", shared);
    }
    if (!field.fields.empty()) {
      out_ += ", fields = {";
      const bool holds = field.type == FieldType::List || field.type == FieldType::Map;
      fields(field.fields, holds ? &field : nullptr, indent + 2);
      append("{:{}}}}", "", indent);
    }
    out_ += " },\n";
  }

  void conditions(const std::vector<FieldCondition>& conditions) {
    out_ += ", when = {";
    for (const FieldCondition& condition : conditions) {
      append(" {{ field = \"{}\", ", condition.field);
      if (condition.test == FieldCondition::Test::Has) {
        append("has = {} }},", condition.bits);
      } else {
        append("is = {} }},", condition.test == FieldCondition::Test::IsTrue);
      }
    }
    out_ += " }";
  }

  static std::string_view typeOf(const SchemaField& field) {
    if (field.isPacked() || field.isDateTimeStatus()) return field.typeName;
    return field.type == FieldType::Record ? "record" : fieldTypeName(field.type);
  }

  /// Lua's numbers hold 32 bits, and more only by way of objects, which the run time does not compare.
  static std::string_view countOf(const SchemaField& field) {
    if (widthOf(*field.count) > 4) throw std::logic_error(field.name + " has a count of 64 bits");
    return fieldTypeName(*field.count);
  }

  bool isKept(const SchemaField& field) const {
    if (widthOf(field.type) == 0 || !keep_.contains(field.name)) return false;
    if (widthOf(field.type) > 4 || isSigned(field.type)) {
      throw std::logic_error(field.name + " decides what travels, and has a sign or 64 bits");
    }
    return true;
  }

  std::string& out_;
  std::set<std::string, std::less<>> keep_;
};

}  // namespace

std::string snakeCase(std::string_view name) {
  std::string snake;
  for (std::size_t i = 0; i < name.size(); ++i) {
    // A word begins at a capital behind a small letter or digit, and at the last capital of several.
    const bool begins =
        i != 0 && isUpper(name[i]) && (!isUpper(name[i - 1]) || (i + 1 < name.size() && isLower(name[i + 1])));
    if (begins) snake += '_';
    snake += static_cast<char>(std::tolower(static_cast<unsigned char>(name[i])));
  }
  return snake;
}

std::string_view sharedFilter(const SchemaField& field, const SchemaField* container) {
  const bool isElement = container != nullptr && container->type == FieldType::List;
  const std::string key = snakeCase(isElement ? container->name : field.name);
  switch (field.type) {
    case FieldType::Money:
      return "money";
    case FieldType::Byte:
      if (isElement) return endsInAnyOf(key, {"seats"}) ? "seat" : "";
      if (container != nullptr) {
        return &field == &container->fields[0] && container->fields[1].type == FieldType::Money ? "seat" : "";
      }
      return endsInAnyOf(key, {"seat", "seat_id"}) ? "seat" : "";
    case FieldType::U16:
    case FieldType::U32:
      if (isElement) return endsInAnyOf(key, {"games", "tables", "tours", "tournaments"}) ? "game_id" : "";
      return endsInAnyOf(key,
                         {"game", "game_id", "table", "table_id", "tour", "tour_id", "tournament", "tournament_id"})
                 ? "game_id"
                 : "";
    default:
      return "";
  }
}

std::string dissectorText() {
  const std::string_view runtime = embeddedFile("Dissector.lua");
  const std::size_t place = runtime.find(kPlace);
  if (place == std::string_view::npos) throw std::logic_error("no place for the commands in the dissector's run time");
  std::string text(runtime.substr(0, place));
  text += "local COMMANDS = {\n";
  TableWriter table(text);
  for (const CommandSchema& schema : CommandSchema::all()) {
    // Of two classes with the same frame, the one that a receiver takes.
    const CommandDescription& row = *schema.description;
    const CommandClass* taken = CommandFactory::find(row.family, row.code);
    if (taken == nullptr || taken->name() == row.name) table.command(schema);
  }
  text += "}\n";
  return text += runtime.substr(place + kPlace.size());
}

}  // namespace poker::cmdproc

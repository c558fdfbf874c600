#include <CommandProcessor/core/Catalogue.h>
#include <hostkit/CommandFactory.h>
#include <inspect/schema/SchemaJson.h>
#include <tools/cmdproc/docs/PageSchema.h>
#include <tools/cmdproc/docs/Reference.h>
#include <tools/cmdproc/embedded/EmbeddedFiles.h>
#include <tools/cmdproc/embedded/Template.h>
#include <tools/cmdproc/texts/TextTables.h>

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <iterator>

namespace poker::cmdproc {

namespace {

using Json = nlohmann::ordered_json;

struct FamilyText {
  const char* name;
  const char* meaning;
};

/// By their numbers.
constexpr FamilyText kFamilies[] = {
    {"Connection",
     "How a connection begins and ends. Both sides send these; the processors of the families Client and "
     "Server handle them."},
    {"Server",
     "From the server: the lobby, the tables, the account, answers to commands of the families Client and "
     "ClientMisc."},
    {"Client", "From the client: logging on, waiting lists, seats, what a player does at a table."},
    {"ServerTour", "From the server: tournaments, their players, tables, prizes."},
    {"ClientTour", "From the client: tournaments."},
    {"ServerMisc", "Has a processor and no commands: no frame carries it."},
    {"ClientMisc", "From the client: the account, pictures, the cashier, replays. Answers come in the family Server."},
};

struct TypeText {
  std::string name;
  std::string bytes;
  const char* meaning;
};

/// What the format knows without a class.
std::vector<TypeText> baseTypes() {
  std::vector<TypeText> types;
  const auto number = [&](FieldType type, const char* meaning) {
    types.push_back({std::string(fieldTypeName(type)), std::to_string(widthOf(type)), meaning});
  };
  number(FieldType::Byte, "An unsigned number: an amount, a seat, a code.");
  number(FieldType::Bool, "0 is false, every other value is true.");
  number(FieldType::U16, "An unsigned number, least significant byte first, as all numbers.");
  number(FieldType::I16, "A signed number, two's complement.");
  number(FieldType::U32, "An unsigned number.");
  number(FieldType::I32, "A signed number, two's complement.");
  number(FieldType::U64, "An unsigned number.");
  number(FieldType::I64, "A signed number, two's complement.");
  number(FieldType::Double, "An IEEE 754 number of double precision.");
  number(FieldType::Money, "An amount in hundredths, signed.");
  number(FieldType::DateTime, "Days since 1899-12-30 00:00 as a double; its fraction is the time of the day.");
  types.push_back(
      {"date-time-status", "12", "A date-time, then whether it holds one (i32: 0 valid, 1 invalid, 2 null)."});
  types.push_back({"string", "characters + 1", "8-bit characters and a NUL, which is no part of the text."});
  types.push_back({"bytes", "its size", "Raw bytes: as many as are fixed, or as the number in front of them says."});
  types.push_back({"zeros", "its size", "Bytes of zero that carry nothing; a reader skips them."});
  types.push_back({"card", "1",
                   "255: face down, the face does not travel. From 100: suit × 16 + rank + 100, seen by its owner "
                   "alone. Below: suit × 16 + rank, shown to all. Suits: 1 clubs, 2 diamonds, 3 hearts, 4 spades. "
                   "Ranks: 2 to 10, 11 jack, 12 queen, 13 king, 14 ace (1 is an ace too)."});
  types.push_back({"flags", "1", "Several bools in one byte, by their bits; bits without a name carry nothing."});
  types.push_back({"list", "count + elements",
                   "The number of elements, then the elements one after the other. Where "
                   "the count stands apart, the list names the field that holds it."});
  types.push_back({"map", "count + entries",
                   "The number of entries, then for each its key and its value, in the order "
                   "of the keys."});
  return types;
}

std::string anchorOf(const std::string& type) {
  std::string anchor = "type-" + type;
  std::replace_if(
      anchor.begin(), anchor.end(), [](unsigned char c) { return std::isalnum(c) == 0 && c != '-'; }, '-');
  return anchor;
}

/// The values for the templates. Every name that a template asks for is set everywhere: an unset one is looked for
/// further out.
class Reference {
 public:
  Json values() const {
    return {{"version", CMDPROC_VERSION},
            {"commandCount", CommandSchema::all().size()},
            {"recordCount", types_.all().size()},
            {"types", baseTypeRows()},
            {"families", families()},
            {"records", records()},
            {"tables", tables()}};
  }
  std::string schema() const {
    std::string json = pageSchema(types_).dump();
    // Inside a script element nothing may look like its end.
    for (std::size_t place = 0; (place = json.find('<', place)) != std::string::npos;)
      json.replace(place, 1, "\\u003c");
    return json;
  }

 private:
  static Json baseTypeRows() {
    Json rows = Json::array();
    for (const TypeText& type : baseTypes()) {
      rows.push_back(
          {{"name", type.name}, {"anchor", anchorOf(type.name)}, {"bytes", type.bytes}, {"meaning", type.meaning}});
    }
    return rows;
  }

  Json families() const {
    Json rows = Json::array();
    for (unsigned number = 0; number < std::size(kFamilies); ++number) {
      const FamilyText& text = kFamilies[number];
      Json commands = Json::array();
      for (const CommandSchema& schema : CommandSchema::all()) {
        if (static_cast<unsigned>(schema.description->family) == number) commands.push_back(command(schema));
      }
      rows.push_back({{"number", number},
                      {"name", text.name},
                      {"meaning", text.meaning},
                      {"count", commands.size()},
                      {"any", !commands.empty()},
                      {"commands", std::move(commands)}});
    }
    return rows;
  }

  Json command(const CommandSchema& schema) const {
    const CommandDescription& row = *schema.description;
    const bool hasTexts = std::any_of(textTables().begin(), textTables().end(),
                                      [&](const TextTable& table) { return table.command == row.name; });
    return {{"name", row.name},
            {"family", static_cast<unsigned>(row.family)},
            {"code", row.code},
            {"frame", fmt::format("{:02X} {:02X}", row.code, static_cast<unsigned>(row.family))},
            {"direction", toText(row.direction)},
            {"fromClient", row.direction == CommandDirection::ClientToServer},
            {"handler", row.handler},
            {"processor", row.processor},
            {"note", note(row)},
            {"isReceived", isReceived(row)},
            {"hasTexts", hasTexts},
            {"hasFields", !schema.fields.empty()},
            {"fields", fields(schema.fields)}};
  }

  /// Whether a receiver makes an object of this class from its frame.
  static bool isReceived(const CommandDescription& row) {
    const CommandClass* received = CommandFactory::find(row.family, row.code);
    return received != nullptr && received->name() == row.name;
  }

  static std::string note(const CommandDescription& row) {
    const CommandClass* received = CommandFactory::find(row.family, row.code);
    if (received != nullptr && !isReceived(row)) {
      return "Shares its pair of family and code with " + std::string(received->name()) +
             ", which is what a receiver makes of it. For use inside a process only.";
    }
    if (received != nullptr && !received->travels) {
      return "Its fields never travel: it is handed over inside the server, and a receiver refuses it.";
    }
    if (row.handler.empty()) return "No processor handles it: the host itself acts on it, or nobody does.";
    return {};
  }

  Json records() const {
    Json rows = Json::array();
    for (const RecordType& type : types_.all()) {
      Json users = Json::array();
      for (const std::string& user : type.usedBy) users.push_back({{"name", user}});
      rows.push_back({{"name", type.key},
                      {"anchor", anchorOf(type.key)},
                      {"hasFields", true},
                      {"fields", fields(type.sample->fields)},
                      {"users", std::move(users)}});
    }
    return rows;
  }

  Json fields(const std::vector<SchemaField>& of) const {
    Json rows = Json::array();
    for (const SchemaField& field : of) {
      Json type = Json::array();
      addType(field, type);
      rows.push_back({{"name", field.type == FieldType::Zeros ? "" : field.name},
                      {"type", std::move(type)},
                      {"bounds", bounds(field)},
                      {"when", field.when},
                      {"derived", field.derived},
                      {"secret", field.secret}});
    }
    return rows;
  }

  /// The type in words, each a link to where it is described.
  void addType(const SchemaField& field, Json& parts) const {
    const std::string key = hasRecordType(field) ? types_.keyOf(field) : typeText(field);
    parts.push_back({{"text", key}, {"anchor", anchorOf(key)}});
    const auto word = [&](const char* text) { parts.push_back({{"text", text}, {"anchor", false}}); };
    if (field.type == FieldType::List) {
      word(" of ");
      addType(field.fields.at(0), parts);
    } else if (field.type == FieldType::Map) {
      word(" of ");
      addType(field.fields.at(0), parts);
      word(" to ");
      addType(field.fields.at(1), parts);
    }
  }

  static std::string bounds(const SchemaField& field) {
    std::vector<std::string> told;
    if (field.count) {
      told.push_back("count: " + std::string(fieldTypeName(*field.count)) +
                     (field.belowOneIsNone ? ", below 1 is none" : ""));
    }
    if (!field.countedBy.empty()) told.push_back("count: field " + field.countedBy);
    if (field.most != 0) told.push_back("at most " + std::to_string(field.most));
    if (field.type == FieldType::String && field.size != 0) {
      told.push_back("at most " + std::to_string(field.size) + " characters");
    } else if (field.type == FieldType::Zeros || (field.type == FieldType::Bytes && !field.count)) {
      told.push_back(std::to_string(field.size) + (field.size == 1 ? " byte" : " bytes"));
    }
    if (field.isFlags()) {
      for (const SchemaField& flag : field.fields) told.push_back(fmt::format("0x{:02X} {}", flag.mask, flag.name));
    } else if (field.type == FieldType::List || field.type == FieldType::Map) {
      for (const SchemaField& inner : field.fields) {
        const std::string within = bounds(inner);
        if (!within.empty()) told.push_back((inner.name.empty() ? "each" : inner.name) + ": " + within);
      }
    }
    return fmt::format("{}", fmt::join(told, "; "));
  }

  static Json variants(const std::vector<TextVariant>& of) {
    Json rows = Json::array();
    for (const TextVariant& variant : of) rows.push_back({{"with", variant.with}, {"text", variant.text}});
    return rows;
  }

  static Json tables() {
    Json all = Json::array();
    for (const TextTable& table : textTables()) {
      Json rows = Json::array();
      for (const TextRow& row : table.rows) rows.push_back({{"code", row.code}, {"variants", variants(row.variants)}});
      all.push_back({{"command", table.command}, {"codeField", table.codeField}, {"rows", std::move(rows)}});
    }
    return all;
  }

  RecordTypes types_;
};

/// Templates leave empty lines where nothing stands; of several one is kept.
std::string withSingleEmptyLines(const std::string& text) {
  std::string kept;
  for (const char c : text) {
    if (c != '\n' || !kept.ends_with("\n\n")) kept += c;
  }
  return kept;
}

/// Every character that Markdown could take for its own, escaped; a line break as one inside a table.
std::string escapeMarkdown(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\n') {
      escaped += "<br>";
      continue;
    }
    if (std::string_view("\\`*_{}[]<>#|~&").find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

}  // namespace

nlohmann::ordered_json referenceValues() { return Reference().values(); }

std::string referenceHtml() {
  const Reference reference;
  Json values = reference.values();
  values["schema"] = reference.schema();
  return fillTemplate("reference.html.mustache", values, escapeHtml);
}

std::string referenceMarkdown() {
  return withSingleEmptyLines(fillTemplate("reference.md.mustache", referenceValues(), escapeMarkdown));
}

}  // namespace poker::cmdproc

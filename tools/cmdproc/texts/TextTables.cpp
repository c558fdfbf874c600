#include <CommandProcessor/types/FieldJson.h>
#include <inspect/CommandFields.h>
#include <inspect/PlayerText.h>
#include <inspect/schema/Schema.h>
#include <tools/cmdproc/texts/TextTables.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <numeric>

namespace poker::cmdproc {

namespace {

using Json = nlohmann::ordered_json;

/// Values to try for a field, beside the one that an empty command has.
std::vector<Json> otherValues(const SchemaField& field) {
  switch (field.type) {
    case FieldType::Byte:
      return {1, 2};
    case FieldType::Bool:
      return {true};
    case FieldType::U32:
    case FieldType::I32:
      return {90};
    default:
      return {};
  }
}

/// One class's command, set by its fields as JSON.
class Texts {
 public:
  explicit Texts(const PlayerTextClass& wanted)
      : wanted_(wanted),
        row_(*CommandFields::of(wanted.command)),
        schema_(*CommandSchema::find(wanted.command)),
        command_(row_.create()) {
    FieldsToJson shown(JsonSecrets::kShow);
    row_.visit(command_, shown);
    empty_ = fields_ = Json::parse(shown.take());
    for (const SchemaField& field : schema_.fields) {
      if (field.name == wanted.codeField) addEdges(field);
      // A text or an amount that is told to the player is seen best when there is one.
      if (field.type == FieldType::String) fields_[field.name] = "<" + field.name + ">";
      if (field.type == FieldType::Money) fields_[field.name] = "12.50";
    }
    findFieldsThatMatter();
  }
  ~Texts() { command_.release(); }
  Texts(const Texts&) = delete;
  Texts& operator=(const Texts&) = delete;

  TextTable table() {
    std::map<std::int64_t, std::vector<TextVariant>> byCode;
    for (const std::int64_t code : codes_) byCode[code] = variants(code);
    const std::vector<TextVariant>& others = commonest(byCode);
    const std::vector<TextVariant>& lowest = byCode.begin()->second;
    TextTable table{std::string(wanted_.command), std::string(wanted_.codeField), {}};
    for (const auto& each : byCode) {
      const bool own = keyOf(each.second) != keyOf(others) && (each.first >= 0 || keyOf(each.second) != keyOf(lowest));
      if (own)
        table.rows.push_back({std::to_string(each.first), each.second, hangsOnlyOnCode(each.first, each.second)});
    }
    table.rows.push_back({"any other", others, false});
    if (byCode.begin()->first < 0 && keyOf(lowest) != keyOf(others)) {
      table.rows.back().code = "any other above 0";
      table.rows.push_back({"any other below 0", lowest, false});
    }
    return table;
  }

 private:
  static std::vector<std::int64_t> numbersFrom(std::int64_t first, std::size_t count) {
    std::vector<std::int64_t> numbers(count);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
  }

  /// Codes with a meaning of their own stand at the edges of what a wide number holds, too.
  void addEdges(const SchemaField& field) {
    if (widthOf(field.type) != 4) return;
    const bool negative = isSigned(field.type);
    const std::int64_t highest = negative ? INT32_MAX : UINT32_MAX;
    for (const std::int64_t first : {negative ? std::int64_t{-16} : 0, highest - 15}) {
      const std::vector<std::int64_t> edge = numbersFrom(first, 16);
      codes_.insert(codes_.end(), edge.begin(), edge.end());
    }
  }

  std::string text(std::int64_t code, const Json& fields) {
    Json set = fields;
    set[std::string(wanted_.codeField)] = code;
    FieldsFromJson values(set.dump(), JsonSecrets::kShow);
    values.run([&](FieldVisitor& visitor) { row_.assign(command_, visitor); });
    std::string told;
    appendJsonString(told, playerText(command_, JsonSecrets::kShow).value());
    std::string readable = Json::parse(told).get<std::string>();  // UTF-8
    // A count that is told to the player is the same text for every count.
    const std::string number = ' ' + std::to_string(code) + ' ';
    if (const std::size_t place = readable.find(number); place != std::string::npos) {
      readable.replace(place + 1, number.size() - 2, "<" + std::string(wanted_.codeField) + ">");
    }
    return readable;
  }

  /// Finds the fields of which a value changes a text.
  void findFieldsThatMatter() {
    settings_ = {fields_};
    for (const SchemaField& field : schema_.fields) {
      if (field.name == wanted_.codeField || field.derived) continue;
      std::vector<Json> values{fields_[field.name]};
      for (const Json& value : otherValues(field)) {
        Json changed = fields_;
        changed[field.name] = value;
        for (const std::int64_t code : codes_) {
          if (text(code, changed) == text(code, fields_)) continue;
          values.push_back(value);
          break;
        }
      }
      if (values.size() == 1) continue;
      matter_[field.name] = values.size();
      std::vector<Json> more;
      for (const Json& setting : settings_) {
        for (const Json& value : values) more.emplace_back(setting)[field.name] = value;
      }
      settings_ = std::move(more);
    }
  }

  /// The texts of a code, each with the settings that lead to it.
  std::vector<TextVariant> variants(std::int64_t code) {
    std::vector<std::pair<std::string, std::vector<const Json*>>> found;
    for (const Json& setting : settings_) {
      std::string read = text(code, setting);
      const auto same = std::find_if(found.begin(), found.end(), [&](const auto& each) { return each.first == read; });
      if (same == found.end()) {
        found.push_back({std::move(read), {&setting}});
      } else {
        same->second.push_back(&setting);
      }
    }
    std::vector<TextVariant> told;
    for (const auto& each : found) told.push_back({inWords(each.second), each.first});
    return told;
  }

  /// "type 1, rebuys 0": a field of which every value occurs need not be told. Where the settings are not simply all
  /// combinations of such values, one after the other is told.
  std::string inWords(const std::vector<const Json*>& settings) const {
    std::string words;
    std::size_t combinations = 1;
    for (const auto& [name, values] : matter_) {
      std::vector<std::string> occurring;
      for (const Json* setting : settings) {
        std::string value = (*setting)[name].dump();
        if (std::find(occurring.begin(), occurring.end(), value) == occurring.end()) occurring.push_back(value);
      }
      combinations *= occurring.size();
      if (occurring.size() == values) continue;
      words += (words.empty() ? "" : ", ") + name + ' ' + occurring[0];
      for (std::size_t i = 1; i < occurring.size(); ++i) words += " or " + occurring[i];
    }
    if (combinations == settings.size()) return words;
    words.clear();
    for (const Json* setting : settings) words += (words.empty() ? "" : "; ") + inWords({setting});
    return words;
  }

  bool hangsOnlyOnCode(std::int64_t code, const std::vector<TextVariant>& variants) {
    return variants.size() == 1 && text(code, empty_) == variants[0].text;
  }

  static std::string keyOf(const std::vector<TextVariant>& variants) {
    std::string key;
    for (const TextVariant& variant : variants) key.append(variant.with).append(1, '\0').append(variant.text) += '\0';
    return key;
  }

  static const std::vector<TextVariant>& commonest(const std::map<std::int64_t, std::vector<TextVariant>>& byCode) {
    std::map<std::string, int> times;
    const std::vector<TextVariant>* most = nullptr;
    int highest = 0;
    for (const auto& each : byCode) {
      const int now = ++times[keyOf(each.second)];
      if (now <= highest) continue;
      highest = now;
      most = &each.second;
    }
    return *most;
  }

  const PlayerTextClass& wanted_;
  const CommandFields& row_;
  const CommandSchema& schema_;
  PokerCommandI& command_;
  Json empty_;   ///< the fields of an empty command
  Json fields_;  ///< the same with amounts and texts to be seen in what is told
  std::vector<std::int64_t> codes_ = numbersFrom(0, 256);
  std::map<std::string, std::size_t> matter_;  ///< how many values are tried of each field that changes a text
  std::vector<Json> settings_;                 ///< all combinations of them
};

}  // namespace

const std::vector<TextTable>& textTables() {
  static const std::vector<TextTable> tables = [] {
    std::vector<TextTable> made;
    for (const PlayerTextClass& each : playerTextClasses()) made.push_back(Texts(each).table());
    return made;
  }();
  return tables;
}

}  // namespace poker::cmdproc

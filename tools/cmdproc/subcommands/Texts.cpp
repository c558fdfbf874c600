#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <hostkit/CommandFactory.h>
#include <inspect/CommandFields.h>
#include <inspect/PlayerText.h>
#include <inspect/schema/Schema.h>
#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/output/Output.h>
#include <tools/cmdproc/texts/TextTables.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace poker::cmdproc {

namespace {

struct Options {
  std::string className;
  std::vector<std::int64_t> codes;
  std::vector<std::string> set;
  bool json = false;
};

/// Sets the code, and the fields that were named; the others are empty.
class CodeFields : public FieldVisitor {
 public:
  CodeFields(std::string_view codeField, std::int64_t code, const std::vector<std::string>& set)
      : codeField_(codeField), code_(code) {
    for (const std::string& each : set) {
      const std::size_t sign = each.find('=');
      if (sign == 0 || sign == std::string::npos) throw UsageError("--set takes FIELD=VALUE, not " + each);
      if (each.substr(0, sign) == codeField) throw UsageError(each.substr(0, sign) + " is the code itself");
      values_.emplace_back(each.substr(0, sign), each.substr(sign + 1));
    }
    used_.resize(values_.size());
  }

  void number(const Field& field, std::int64_t& value) override {
    value = field.name == codeField_ ? code_ : 0;
    const std::string* text = valueOf(field);
    if (text == nullptr) return;
    const std::string_view digits = *text == "true" ? "1" : *text == "false" ? "0" : std::string_view(*text);
    if (field.type == FieldType::Money) {
      if (digits.empty() || digits.find_first_not_of("-.0123456789") != std::string_view::npos) {
        throw UsageError(std::string(field.name) + " takes an amount, not " + *text);
      }
      value = RealMoneyType::fromText(digits).hundredths();
    } else if (const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
               error != std::errc() || end != digits.data() + digits.size()) {
      throw UsageError(std::string(field.name) + " takes a number, not " + *text);
    }
  }
  void real(const Field&, double& value) override { value = 0; }
  void text(const Field& field, std::string& value) override {
    const std::string* text = valueOf(field);
    value = text == nullptr ? std::string() : *text;
  }
  void bytes(const Field&, std::vector<std::uint8_t>& value) override { value.clear(); }
  void beginRecord(const Field&) override {}
  void endRecord(const Field&) override {}
  std::size_t beginList(const Field&, std::size_t) override { return 0; }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field&, std::size_t) override { return 0; }
  void endMap(const Field&) override {}

  /// @throws UsageError  a value was given for a field that the class does not have
  void checkAllUsed() const {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      if (!used_[i]) throw UsageError("there is no field " + values_[i].first);
    }
  }

 private:
  const std::string* valueOf(const Field& field) {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      if (values_[i].first != field.name) continue;
      used_[i] = true;
      return &values_[i].second;
    }
    return nullptr;
  }

  std::string_view codeField_;
  std::int64_t code_;
  std::vector<std::pair<std::string, std::string>> values_;
  std::vector<bool> used_;
};

/// What the player reads for a code; none when the code's field cannot hold it.
std::optional<std::string> textOf(const PlayerTextClass& row, std::int64_t code, const std::vector<std::string>& set) {
  const CommandHandle<> command(CommandFactory::find(row.command)->create());
  CodeFields fields(row.codeField, code, set);
  try {
    CommandFields::of(*command)->assign(*command, fields);
  } catch (const FieldValueError&) {
    return std::nullopt;
  }
  fields.checkAllUsed();
  std::string json;
  appendJsonString(json, playerText(*command, JsonSecrets::kShow).value());
  return nlohmann::json::parse(json).get<std::string>();  // UTF-8
}

std::string lineOf(const Options& options, const std::string& code, const std::string& with, const std::string& text) {
  const std::string when = with.empty() ? "" : " (" + with + ")";
  if (!options.json) return fmt::format("{}{}: {}", code, when, text.empty() ? "(nothing)" : text);
  nlohmann::ordered_json json{{"command", options.className}, {"code", code}};
  if (!with.empty()) json["with"] = with;
  json["text"] = text;
  return json.dump(-1, ' ', true);
}

/// Writes the texts of a code that has some of its own, or of all codes and what the others read.
/// @param code  empty for all
/// @return false when the code has no text of its own
bool writeRows(const Options& options, const std::string& code, Output& output) {
  const auto& tables = textTables();
  const auto table = std::find_if(tables.begin(), tables.end(),
                                  [&](const TextTable& each) { return each.command == options.className; });
  bool found = false;
  for (const TextRow& row : table->rows) {
    if (!code.empty() && row.code != code) continue;
    found = true;
    for (const TextVariant& variant : row.variants) {
      output.line(lineOf(options, row.code, variant.with, variant.text));
    }
  }
  return found;
}

ExitStatus texts(const Options& options) {
  Output output;
  const auto rows = playerTextClasses();
  if (options.className.empty()) {
    for (const PlayerTextClass& each : rows) {
      output.line(options.json ? nlohmann::json{{"command", each.command}, {"codeField", each.codeField}}.dump()
                               : fmt::format("{} {}", each.command, each.codeField));
    }
    output.flush();
    return ExitStatus::Clean;
  }
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [&](const PlayerTextClass& each) { return each.command == options.className; });
  if (row == rows.end()) {
    const bool exists = CommandSchema::find(options.className) != nullptr;
    throw UsageError(exists
                         ? options.className + " has no text for the player (cmdproc texts shows the classes that have)"
                         : "no command class is called " + options.className + " (cmdproc list shows them all)");
  }
  if (options.codes.empty() && !options.set.empty()) throw UsageError("--set tells of a CODE, and there is none");
  if (options.codes.empty()) writeRows(options, {}, output);
  for (const std::int64_t code : options.codes) {
    if (options.set.empty() && writeRows(options, std::to_string(code), output)) continue;
    const auto text = textOf(*row, code, options.set);
    if (!text) throw UsageError(fmt::format("{} cannot hold the code {}", row->codeField, code));
    output.line(lineOf(options, std::to_string(code), fmt::format("{}", fmt::join(options.set, ", ")), *text));
  }
  output.flush();
  return ExitStatus::Clean;
}

}  // namespace

void addTexts(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("texts", "what the player reads for a code");
  const auto options = std::make_shared<Options>();
  subcommand.add_option("CLASS", options->className, "a command class; without one, the classes that have texts")
      ->type_name("");
  subcommand.add_option("CODE", options->codes, "codes; without any, all that have a text of their own")->type_name("");
  subcommand.add_option("--set", options->set, "another field that the text tells of, as FIELD=VALUE")
      ->type_name("FIELD=VALUE")
      ->expected(1)
      ->take_all();
  subcommand.add_flag("--json", options->json, "one JSON object a line");
  subcommand.callback([&action, options] { action = [options] { return texts(*options); }; });
}

}  // namespace poker::cmdproc

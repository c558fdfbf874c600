#include <tools/cmdproc/manual/AppTree.h>

#include <algorithm>

namespace poker::cmdproc {

namespace {

std::string oneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

ValueKind kindOf(const std::string& value) {
  if (value == "FILE" || value == "CAPTURE") return ValueKind::File;
  if (value == "DIR") return ValueKind::Folder;
  if (value == "CLASS") return ValueKind::CommandClass;
  return ValueKind::Text;
}

OptionText optionText(const CLI::Option& option) {
  OptionText text;
  text.description = oneLine(option.get_description());
  text.defaultValue = option.get_default_str();
  for (const std::string& name : option.get_snames()) text.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) text.names.push_back("--" + name);
  text.required = option.get_required();
  if (option.get_items_expected_max() == 0) return text;  // a flag
  text.repeats = option.get_items_expected_max() > 1;

  // "NAME:{a,b}": what the option calls its value, then what its checks say of it.
  const std::string type = option.get_type_name();
  const std::size_t brace = type.find('{');
  text.value = option.get_positional() ? option.get_name(true) : type.substr(0, type.find(':'));
  text.kind = kindOf(text.value);
  if (const std::size_t end = type.find('}'); brace < end && end != std::string::npos) {
    text.kind = ValueKind::Choice;
    text.choices = split(std::string_view(type).substr(brace + 1, end - brace - 1), ',');
  }
  if (text.value.empty()) {
    for (const std::string& choice : text.choices) text.value += (text.value.empty() ? "" : "|") + choice;
  }
  if (text.value.empty()) text.value = "VALUE";
  return text;
}

SubcommandText subcommandText(const CLI::App& app) {
  SubcommandText text{app.get_name(), oneLine(app.get_description()), app.get_footer(), {}, {}};
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_group().empty()) continue;  // hidden
    OptionText each = optionText(*option);
    (each.isArgument() ? text.arguments : text.options).push_back(std::move(each));
  }
  return text;
}

}  // namespace

ProgramText programText(const CLI::App& program) {
  ProgramText text{subcommandText(program), {}};
  for (const CLI::App* subcommand : program.get_subcommands([](const CLI::App*) { return true; })) {
    if (!subcommand->get_group().empty()) text.subcommands.push_back(subcommandText(*subcommand));
  }
  return text;
}

}  // namespace poker::cmdproc

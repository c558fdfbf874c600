#include <CommandProcessor/core/Catalogue.h>
#include <tools/cmdproc/completion/Completion.h>
#include <tools/cmdproc/embedded/Template.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <string_view>

namespace poker::cmdproc {

namespace {

using Json = nlohmann::ordered_json;

/// Inside single quotes of zsh, with a backslash in front of the signs that the reader of the text takes for its own.
std::string quotedForZsh(const std::string& text, std::string_view signs) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\'') {
      escaped += "'\\''";
      continue;
    }
    if (signs.find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

/// For [explanation] and :message: of _arguments.
std::string escapeZsh(const std::string& text) { return quotedForZsh(text, "\\[]:"); }

/// Inside single quotes of fish.
std::string escapeFish(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\' || c == '\'') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

/// What a value is completed with. Every name is set: an unset one is looked for further out.
Json valueJson(const OptionText& of) {
  return {{"value", of.value},
          {"takesValue", of.kind != ValueKind::None},
          {"text", of.kind == ValueKind::Text},
          {"file", of.kind == ValueKind::File},
          {"folder", of.kind == ValueKind::Folder},
          {"class", of.kind == ValueKind::CommandClass},
          {"choices", fmt::format("{}", fmt::join(of.choices, " "))},
          {"description", of.description}};
}

Json optionJson(const OptionText& option) {
  Json json = valueJson(option);
  json["repeats"] = option.repeats;
  json["all"] = fmt::format("{}", fmt::join(option.names, " "));
  json["pattern"] = fmt::format("{}", fmt::join(option.names, " | "));
  for (const std::string& name : option.names) {
    const bool isLong = name.starts_with("--");
    json["names"].push_back({{"name", name}, {"long", isLong}, {"bare", name.substr(isLong ? 2 : 1)}});
  }
  return json;
}

Json subcommandJson(const SubcommandText& subcommand) {
  Json options = Json::array();
  std::string names;
  std::string withValue;
  for (const OptionText& option : subcommand.options) {
    options.push_back(optionJson(option));
    for (const std::string& name : option.names) {
      names += (names.empty() ? "" : " ") + name;
      if (option.kind != ValueKind::None) withValue += (withValue.empty() ? "" : " ") + name;
    }
  }
  Json arguments = Json::array();
  for (std::size_t i = 0; i < subcommand.arguments.size(); ++i) {
    const OptionText& argument = subcommand.arguments[i];
    Json json = valueJson(argument);
    json["index"] = i + 1;
    json["rest"] = argument.repeats;
    json["optional"] = !argument.required;
    arguments.push_back(std::move(json));
  }
  return {{"name", subcommand.name},
          {"about", subcommand.description},
          {"zshAbout", quotedForZsh(subcommand.description, "\\:")},
          {"optionNames", names},
          {"optionsWithValue", withValue},
          {"options", std::move(options)},
          {"hasArguments", !arguments.empty()},
          {"arguments", std::move(arguments)}};
}

}  // namespace

std::string completionScript(const ProgramText& program, Shell shell) {
  Json values = subcommandJson(program.program);
  for (const SubcommandText& each : program.subcommands) values["subcommands"].push_back(subcommandJson(each));
  std::string classes;
  for (const CommandDescription& row : commandCatalogue()) {
    (classes += classes.empty() ? "" : " ").append(row.name);
  }
  values["classes"] = classes;
  const auto plain = [](const std::string& text) { return text; };  // names alone
  switch (shell) {
    case Shell::Bash:
      return withoutEmptyLines(fillTemplate("completion.bash.mustache", values, plain));
    case Shell::Zsh:
      return withoutEmptyLines(fillTemplate("completion.zsh.mustache", values, escapeZsh));
    default:
      return withoutEmptyLines(fillTemplate("completion.fish.mustache", values, escapeFish));
  }
}

}  // namespace poker::cmdproc

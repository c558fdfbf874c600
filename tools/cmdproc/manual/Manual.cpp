#include <tools/cmdproc/docs/Reference.h>
#include <tools/cmdproc/embedded/EmbeddedFiles.h>
#include <tools/cmdproc/embedded/Template.h>
#include <tools/cmdproc/manual/Manual.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <sstream>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <stdexcept>

namespace poker::cmdproc {

namespace {

using Json = nlohmann::ordered_json;

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

/// For lines of text: what would begin a macro or an escape means itself, and each sentence begins a line.
std::string escapeMdoc(const std::string& text) {
  std::string escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool atStart = escaped.empty() || escaped.back() == '\n';
    if (atStart && (c == '.' || c == '\'')) escaped += "\\&";
    if (c == ' ' && i != 0 && text[i - 1] == '.') {
      escaped += '\n';
      continue;
    }
    escaped += c;
    if (c == '\\') escaped += 'e';
  }
  return escaped;
}

/// A word of a macro's line; one that is a macro's name otherwise, or none at all, would be taken for what it is not.
std::string word(const std::string& text) { return "\\&" + escapeMdoc(text); }

/// "Fl -max-frame Ar BYTES"
std::string head(const OptionText& option) {
  std::string text;
  for (const std::string& name : option.names) text += (text.empty() ? "Fl " : " , Fl ") + name.substr(1);
  if (!option.value.empty()) text += (text.empty() ? "Ar " : " Ar ") + word(option.value);
  if (option.repeats) text += " ...";
  return text;
}

std::string sentence(const OptionText& option) {
  std::string text = option.description;
  if (text.empty()) return text;
  text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  if (text.back() != '.') text += '.';
  if (!option.choices.empty()) text += fmt::format(" One of {}.", fmt::join(option.choices, ", "));
  if (!option.defaultValue.empty()) text += " The default is " + option.defaultValue + '.';
  return text;
}

Json optionsJson(const std::vector<OptionText>& options) {
  Json rows = Json::array();
  for (const OptionText& option : options) {
    const bool help = std::find(option.names.begin(), option.names.end(), "--help") != option.names.end();
    rows.push_back({{"head", head(option)}, {"required", option.required}, {"help", help}, {"text", sentence(option)}});
  }
  return rows;
}

Json subcommandJson(const SubcommandText& subcommand) {
  Json options = optionsJson(subcommand.arguments);
  for (const Json& each : optionsJson(subcommand.options)) options.push_back(each);
  return {{"name", subcommand.name},
          {"title", upper(subcommand.name)},
          {"description", subcommand.description},
          {"synopsisOptions", optionsJson(subcommand.options)},
          {"synopsisArguments", optionsJson(subcommand.arguments)},
          {"options", std::move(options)}};
}

/// Breaks lines of running text at blanks: mdoc fills them anyway, and wants its source in lines of 80 bytes.
std::string wrapped(const std::string& mdoc) {
  constexpr std::size_t kWidth = 80;
  std::string result;
  bool literal = false;
  std::istringstream lines(mdoc);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(".Bd -literal")) literal = true;
    if (line.starts_with(".Ed")) literal = false;
    while (!literal && !line.starts_with('.') && line.size() > kWidth) {
      std::size_t end = line.rfind(' ', kWidth);
      // What would begin a line with a point or an apostrophe would be a request.
      while (end != std::string::npos && end != 0 && (line[end + 1] == '.' || line[end + 1] == '\'')) {
        end = line.rfind(' ', end - 1);
      }
      if (end == std::string::npos || end == 0) break;
      result.append(line, 0, end) += '\n';
      line.erase(0, end + 1);
    }
    result += line + '\n';
  }
  return result;
}

/// An empty line is a fault in mdoc.
std::string page(const std::string& file, const Json& values) {
  return wrapped(withoutEmptyLines(fillTemplate(file, values, escapeMdoc)));
}

}  // namespace

std::vector<ManualPage> manualPages(const ProgramText& program, std::time_t date) {
  using namespace std::chrono;
  const year_month_day day{floor<days>(system_clock::from_time_t(date))};
  // Written out here: the system's names of months are those of its language.
  static constexpr const char* kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                            "July",    "August",   "September", "October", "November", "December"};
  const Json common = {{"date", fmt::format("{} {}, {}", kMonths[static_cast<unsigned>(day.month()) - 1],
                                            static_cast<unsigned>(day.day()), static_cast<int>(day.year()))}};

  std::vector<ManualPage> pages;
  Json values = subcommandJson(program.program);
  values.update(common);
  for (const SubcommandText& subcommand : program.subcommands) {
    const std::string name = "cmdproc-" + subcommand.name;
    if (findEmbeddedFile(name + ".mdoc") == nullptr) {
      throw std::logic_error("the manual has no text for the subcommand " + subcommand.name);
    }
    Json of = subcommandJson(subcommand);
    of.update(common);
    values["subcommands"].push_back(of);
    pages.push_back({name + ".1", page("head.mdoc", of) + page(name + ".mdoc", of)});
  }
  std::sort(pages.begin(), pages.end(),
            [](const ManualPage& left, const ManualPage& right) { return left.file < right.file; });
  for (const ManualPage& each : pages) {
    values["pages"].push_back({{"page", each.file.substr(0, each.file.rfind('.'))}});
  }
  pages.push_back({"cmdproc.1", page("cmdproc.mdoc", values)});
  Json protocol = referenceValues();
  protocol.update(common);
  pages.push_back({"cmdproc-protocol.7", page("cmdproc-protocol.mdoc", protocol)});
  return pages;
}

}  // namespace poker::cmdproc

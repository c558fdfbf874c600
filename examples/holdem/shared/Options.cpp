#include <examples/holdem/shared/Options.h>

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <string_view>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace poker::holdem {

namespace {

bool isTerminal(std::FILE* stream) {
#ifdef _WIN32
  return _isatty(_fileno(stream)) != 0;
#else
  return isatty(fileno(stream)) != 0;
#endif
}

}  // namespace

void addSeconds(CLI::App& app, const std::string& name, std::chrono::milliseconds& value, const std::string& help) {
  const double standard = std::chrono::duration<double>(value).count();
  app.add_option_function<double>(
         name, [&value](const double& seconds) { value = std::chrono::milliseconds(std::llround(seconds * 1000)); },
         help)
      ->check(CLI::Range(0.0, 86400.0).description(""))
      ->check(CLI::Validator(
          [](const std::string& text) {
            return text.find_first_not_of("0123456789.") == std::string::npos ? std::string()
                                                                              : "not a number of seconds: " + text;
          },
          ""))
      ->type_name("SECONDS")
      ->default_str(fmt::format("{}", standard));
}

CLI::Option* addEndpoint(CLI::App& app, const std::string& name, Endpoint& value, const std::string& help) {
  const auto assign = [&value, name](const std::string& text) {
    const std::optional<Endpoint> parsed = Endpoint::parse(text);
    if (!parsed) throw CLI::ValidationError(name, "not HOST:PORT: " + text);
    value = *parsed;
  };
  CLI::Option* option = app.add_option_function<std::string>(name, assign, help)->type_name("HOST:PORT");
  if (!value.host.empty()) option->default_str(value.toString());
  return option;
}

void addColour(CLI::App& app, Colour& value) {
  static const std::map<std::string, Colour> kNames = {
      {"auto", Colour::Auto}, {"always", Colour::Always}, {"never", Colour::Never}};
  app.add_option_function<std::string>(
         "--color", [&value](const std::string& name) { value = kNames.at(name); }, "write in colour")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->default_str("auto");
}

bool wantsColour(Colour choice, std::FILE* stream) {
  if (choice != Colour::Auto) return choice == Colour::Always;
  const char* refused = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  if (refused != nullptr && *refused != '\0') return false;
  if (terminal != nullptr && std::string_view(terminal) == "dumb") return false;
  return isTerminal(stream);
}

int parseOptions(CLI::App& app, int argc, char** argv) {
  for (CLI::Option* option : app.get_options()) option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  try {
    app.parse(argc, argv);
    return -1;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
}

}  // namespace poker::holdem

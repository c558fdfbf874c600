#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/rehearsal/Scripts.h>

#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace poker::holdem {

namespace {

struct Options {
  ScriptSettings settings;
  std::string script = "polite";
  std::uint32_t version = 0;
  bool wantsTranscript = false;
  Colour colour = Colour::Auto;
};

int run(const Options& options) {
  const bool inColour = wantsColour(options.colour, stdout);
  std::unique_ptr<Transcript> transcript;
  if (options.wantsTranscript) transcript = std::make_unique<Transcript>(stdout, inColour);
  const Script& script = *findScript(options.script);
  ClientSettings clientSettings = options.settings.client;
  // Silence is what this one is about.
  if (script.name == "idle") clientSettings.keepAlive = {};
  Rehearsal rehearsal(clientSettings, inColour, transcript.get());
  fmt::print("{}: {}\n", script.name, script.story);
  try {
    script.play(rehearsal, options.settings);
    fmt::print("{}: {} expectations held\n", script.name, rehearsal.heldCount());
    return kInOrder;
  } catch (const ExpectationFailed&) {
    fmt::print("{}: FAILED, {} expectations held before\n", script.name, rehearsal.heldCount());
    return kNotAsExpected;
  } catch (const std::exception& error) {
    std::fflush(stdout);
    fmt::print(stderr, "holdem-client: {}: {}\n", options.settings.server.toString(), error.what());
    return kNoConnection;
  }
}

}  // namespace

Subcommand addRehearse(CLI::App& parent) {
  const auto options = std::make_shared<Options>();
  ScriptSettings& settings = options->settings;
  std::vector<std::string> names;
  std::string stories = "Scripts:\n";
  for (const Script& script : scripts()) {
    names.emplace_back(script.name);
    stories += fmt::format("  {:<12}{}\n", script.name, script.story);
  }

  CLI::App& app = *parent.add_subcommand("rehearse", "Plays a script against a server and tells what it expected.");
  app.footer(stories);
  addEndpoint(app, "--connect", settings.server, "the server")->required();
  app.add_option("--script", options->script, "what to play")
      ->check(CLI::IsMember(names))
      ->capture_default_str()
      ->type_name("NAME");
  CLI::Option* version =
      app.add_option("--version", options->version, "of the hand-shake; otherwise what the script needs")
          ->type_name("N");
  addSeconds(app, "--keep-alive", settings.client.keepAlive, "how often to send one");
  app.add_flag("--leave", settings.client.leavesAtMaintenance, "say bye when maintenance begins");
  app.add_flag("--announced", settings.expectsAnnouncement, "maintenance will be announced before it begins");
  addSeconds(app, "--patience", settings.patience, "how long to wait for maintenance");
  app.add_option("--most", settings.most, "connections that the crowd opens at most")
      ->capture_default_str()
      ->type_name("N");
  app.add_flag("--transcript", options->wantsTranscript, "show the conversation too");
  addColour(app, options->colour);
  return {&app, [options, version] {
            if (version->count() != 0) options->settings.version = options->version;
            return run(*options);
          }};
}

}  // namespace poker::holdem

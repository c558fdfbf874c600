// The client: plays a script against a server and tells what it expected.

#include <examples/holdem/client/Scripts.h>
#include <examples/holdem/shared/Options.h>

#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace poker;
using namespace poker::holdem;

constexpr int kHeld = 0;
constexpr int kFailed = 1;
constexpr int kTrouble = 2;

}  // namespace

int main(int argc, char** argv) {
  ScriptSettings settings;
  std::string name = "polite";
  std::uint32_t version = 0;
  bool wantsTranscript = false;
  Colour colour = Colour::Auto;

  std::vector<std::string> names;
  std::string stories = "Scripts:\n";
  for (const Script& script : scripts()) {
    names.emplace_back(script.name);
    stories += fmt::format("  {:<12}{}\n", script.name, script.story);
  }

  CLI::App app(
      "Plays a script against a server. Exits with 0 when all that it expected came, 1 when something did not, "
      "2 when there was no connection.");
  app.footer(stories);
  addEndpoint(app, "--connect", settings.server, "the server")->required();
  app.add_option("--script", name, "what to play")
      ->check(CLI::IsMember(names))
      ->capture_default_str()
      ->type_name("NAME");
  CLI::Option* versionOption =
      app.add_option("--version", version, "of the hand-shake; otherwise what the script needs")->type_name("N");
  addSeconds(app, "--keep-alive", settings.client.keepAlive, "how often to send one");
  app.add_flag("--leave", settings.client.leavesAtMaintenance, "say bye when maintenance begins");
  app.add_flag("--announced", settings.expectsAnnouncement, "maintenance will be announced before it begins");
  addSeconds(app, "--patience", settings.patience, "how long to wait for maintenance");
  app.add_option("--most", settings.most, "connections that the crowd opens at most")
      ->capture_default_str()
      ->type_name("N");
  app.add_flag("--transcript", wantsTranscript, "show the conversation too");
  addColour(app, colour);
  if (const int status = parseOptions(app, argc, argv); status >= 0) return status == 0 ? kHeld : kTrouble;
  if (versionOption->count() != 0) settings.version = version;

  const bool inColour = wantsColour(colour, stdout);
  std::unique_ptr<Transcript> transcript;
  if (wantsTranscript) transcript = std::make_unique<Transcript>(stdout, inColour);
  ClientSettings clientSettings = settings.client;
  // Silence is what this one is about.
  if (name == "idle") clientSettings.keepAlive = {};
  Rehearsal rehearsal(clientSettings, inColour, transcript.get());
  const Script& script = *findScript(name);
  fmt::print("{}: {}\n", script.name, script.story);
  try {
    script.play(rehearsal, settings);
    fmt::print("{}: {} expectations held\n", name, rehearsal.heldCount());
    return kHeld;
  } catch (const ExpectationFailed&) {
    fmt::print("{}: FAILED, {} expectations held before\n", name, rehearsal.heldCount());
    return kFailed;
  } catch (const std::exception& error) {
    std::fflush(stdout);
    fmt::print(stderr, "holdem-client: {}: {}\n", settings.server.toString(), error.what());
    return kTrouble;
  }
}

#include <inspect/hands/HandRecorder.h>
#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/input/HandReader.h>
#include <tools/cmdproc/input/Input.h>
#include <tools/cmdproc/output/Output.h>

#include <fmt/format.h>

#include <charconv>
#include <memory>
#include <optional>
#include <string>

namespace poker::cmdproc {

namespace {

constexpr const char* kServer = "server";

struct Options {
  InputOptions input;
  std::string table;
  std::optional<std::uint64_t> hand;
  std::string as = kServer;
};

std::optional<SeatID> seatFrom(const std::string& text) {
  SeatID::value_type seat = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seat);
  if (error != std::errc() || end != text.data() + text.size() || !SeatID(seat).isValid()) return std::nullopt;
  return SeatID(seat);
}

std::optional<HandStory> storyFor(const RecordedHand& hand, const std::string& viewer) {
  if (!hand.isWhole()) return std::nullopt;
  if (viewer == kServer) return hand.story();
  if (const auto seat = seatFrom(viewer)) return hand.storyOf(*seat);
  return hand.storyOf(std::string_view(viewer));
}

ExitStatus hands(const Options& options) {
  Output output;
  std::uint64_t told = 0;
  std::uint64_t leftOut = 0;
  std::uint64_t seen = 0;
  const auto tell = [&](const RecordedHand& hand) {
    ++seen;
    if (options.hand && hand.number() != *options.hand) return;
    if (!options.table.empty() && hand.tableName() != options.table && hand.tableLabel() != options.table) return;
    const std::optional<HandStory> story = storyFor(hand, options.as);
    if (!story) {
      ++leftOut;
      return;
    }
    if (told++ != 0) output.write("\n");
    output.write(toText(*story));
  };
  const auto source = openCapture(options.input);
  HandRecorder recorder(tell, [](const HandFinding&) {});
  HandReader reader(recorder);
  ExitStatus status = ExitStatus::Clean;
  {
    Progress progress;
    CapturedFrame frame;
    while (source->next(frame)) {
      if (const std::string problem = reader.take(frame); !problem.empty()) {
        progress.clear();
        complain(problem);
        status = ExitStatus::Findings;
      }
      progress.update(source->position(), source->size(), told, "hands");
    }
  }
  recorder.finish();
  output.flush();
  if (told == 0 && leftOut == 0 && seen != 0) complain(fmt::format("none of {} hands is the one asked for", seen));
  if (leftOut != 0) {
    complain(fmt::format("{} {} left out: {}", leftOut, leftOut == 1 ? "hand was" : "hands were",
                         options.as == kServer ? "no connection saw all of it" : "no such player saw all of it"));
  }
  return status;
}

}  // namespace

void addHands(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("hands", "the hands of a capture, as poker text");
  const auto options = std::make_shared<Options>();
  addCapture(subcommand, options->input);
  subcommand.add_option("--table", options->table, "the hands of that table alone")->type_name("NAME");
  subcommand.add_option("--hand", options->hand, "that hand alone")->type_name("N");
  subcommand
      .add_option(
          "--as", options->as,
          "who tells: a seat's number or a player's name, with what that seat's connection was told; or server, "
          "with all cards that any connection was told")
      ->type_name("SEAT|PLAYER|server")
      ->capture_default_str();
  subcommand.callback([&action, options] { action = [options] { return hands(*options); }; });
}

}  // namespace poker::cmdproc

#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/input/DecodeFrame.h>
#include <tools/cmdproc/input/Input.h>
#include <tools/cmdproc/output/Output.h>
#include <tools/cmdproc/stats/Traffic.h>

#include <memory>

namespace poker::cmdproc {

namespace {

struct Options {
  InputOptions input;
  bool json = false;
};

ExitStatus stats(const Options& options) {
  const auto input = openInput(options.input);
  Traffic traffic;
  Progress progress;
  CapturedFrame frame;
  while (input->next(frame)) {
    traffic.add(frame);
    progress.update(input->position(), input->size(), frame.number, "commands");
  }
  progress.clear();
  Output output;
  output.write(options.json ? traffic.json() : traffic.table());
  output.flush();
  for (const std::string& problem : traffic.problems()) complain(problem);
  if (traffic.unreadable() > traffic.problems().size()) {
    complain(std::to_string(traffic.unreadable() - traffic.problems().size()) + " more frames cannot be read");
  }
  return traffic.unreadable() == 0 ? ExitStatus::Clean : ExitStatus::Findings;
}

}  // namespace

void addStats(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand(
      "stats", "how many commands of each class there are, how large they are, what compression gains");
  const auto options = std::make_shared<Options>();
  addInput(subcommand, options->input);
  subcommand.add_flag("--json", options->json, "one JSON object");
  subcommand.callback([&action, options] { action = [options] { return stats(*options); }; });
}

}  // namespace poker::cmdproc

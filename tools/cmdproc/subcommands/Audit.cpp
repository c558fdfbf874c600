#include <inspect/hands/HandRecorder.h>
#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/input/HandReader.h>
#include <tools/cmdproc/input/Input.h>
#include <tools/cmdproc/output/Output.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <string>

namespace poker::cmdproc {

namespace {

struct Options {
  InputOptions input;
  bool json = false;
};

std::string jsonOf(const HandFinding& finding) {
  nlohmann::ordered_json json = {{"hand", finding.hand}};
  if (finding.isAfter) json["after"] = true;
  json["table"] = finding.table;
  json["command"] = finding.at.command;
  json["offset"] = finding.at.offset;
  json["direction"] = toText(finding.at.direction);
  json["connection"] = finding.connection;
  json["others"] = finding.others;
  json["finding"] = finding.text;
  // The table's name is the server's own, and may be any bytes.
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

ExitStatus audit(const Options& options) {
  Output output;
  std::uint64_t findings = 0;
  std::uint64_t hands = 0;
  std::uint64_t parts = 0;
  const auto tell = [&](const HandFinding& finding) {
    ++findings;
    output.line(options.json ? jsonOf(finding) : finding.line());
  };
  const auto source = openCapture(options.input);
  HandRecorder recorder(
      [&](const RecordedHand& hand) {
        ++(hand.isWhole() ? hands : parts);
        for (const HandFinding& finding : hand.findings()) tell(finding);
      },
      tell);
  HandReader reader(recorder);
  std::uint64_t unread = 0;
  {
    Progress progress;
    CapturedFrame frame;
    while (source->next(frame)) {
      if (const std::string problem = reader.take(frame); !problem.empty()) {
        progress.clear();
        complain(problem);
        ++unread;
      }
      progress.update(source->position(), source->size(), hands, "hands");
    }
  }
  recorder.finish();
  output.flush();
  complain(fmt::format("{} hands{}, {} commands, {} connections: {}", hands,
                       parts != 0 ? fmt::format(" and parts of {} more", parts) : std::string(), reader.commands(),
                       recorder.connections(), findings == 1 ? "1 finding" : fmt::format("{} findings", findings)));
  return findings != 0 || unread != 0 ? ExitStatus::Findings : ExitStatus::Clean;
}

}  // namespace

void addAudit(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("audit", "what is wrong in the hands of a capture");
  const auto options = std::make_shared<Options>();
  addCapture(subcommand, options->input);
  subcommand.add_flag("--json", options->json, "one JSON object a finding");
  subcommand.callback([&action, options] { action = [options] { return audit(*options); }; });
}

}  // namespace poker::cmdproc

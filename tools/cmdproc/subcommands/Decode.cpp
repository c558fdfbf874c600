#include <hostkit/CommandFactory.h>
#include <hostkit/StreamFramer.h>
#include <inspect/CommandJson.h>
#include <inspect/CommandText.h>
#include <inspect/PlayerText.h>
#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/input/Batches.h>
#include <tools/cmdproc/input/DecodeFrame.h>
#include <tools/cmdproc/input/Input.h>
#include <tools/cmdproc/output/Annotation.h>
#include <tools/cmdproc/output/Circumstances.h>
#include <tools/cmdproc/output/Output.h>

#include <memory>
#include <string>
#include <vector>

namespace poker::cmdproc {

namespace {

struct Options {
  InputOptions input;
  bool json = false;
  bool annotate = false;
  bool keepGoing = false;
  bool offsets = false;
  JsonSecrets secrets = JsonSecrets::kMask;
};

/// What cannot be read of a frame, as it is told.
class Unreadable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Writes each frame in the form that was asked for.
class Decoder {
 public:
  explicit Decoder(const Options& options) : options_(options) {}

  ExitStatus run() {
    const auto input = openInput(options_.input);
    ExitStatus status = ExitStatus::Clean;
    Progress progress;
    CapturedFrame frame;
    while (input->next(frame)) {
      try {
        write(frame);
      } catch (const Unreadable& error) {
        status = ExitStatus::Findings;
        output_.flush();
        progress.clear();
        complain(error.what());
        if (!options_.keepGoing) break;
      }
      progress.update(input->position(), input->size(), frame.number, "commands");
    }
    output_.flush();
    return status;
  }

 private:
  void write(const CapturedFrame& frame) {
    if (!frame.problem.empty()) {
      if (options_.annotate && !frame.bytes.empty()) annotation(frame, frame.problem);
      throw Unreadable(failureText(frame));
    }
    DecodeResult decoded = decodeFrame(frame.bytes);
    if (!decoded) {
      if (options_.annotate) annotation(frame, decoded.error.message);
      throw Unreadable(failureText(frame, decoded.error));
    }
    if (options_.annotate) {
      annotation(frame, *decoded.command);
    } else if (options_.json) {
      output_.line(json(frame, *decoded.command));
    } else {
      output_.write(lines(frame, *decoded.command, {}));
    }
  }

  /// Opens a batch.
  /// @throws Unreadable
  void open(const CapturedFrame& frame, SrvCompressedCommands& batch) {
    const std::string_view problem = content_.open(batch);
    if (problem.empty()) return;
    throw Unreadable("offset " + std::to_string(frame.offset) + ": SrvCompressedCommands: the batch " +
                     std::string(problem));
  }

  /// Reads a frame inside a batch.
  /// @throws Unreadable
  CommandHandle<> decodeInside(const CapturedFrame& batch, const CapturedFrame& frame) {
    DecodeResult decoded = decodeFrame(frame.bytes);
    if (decoded) return std::move(decoded.command);
    throw Unreadable("offset " + std::to_string(batch.offset) + ": SrvCompressedCommands: inside of the batch, " +
                     failureText(frame, decoded.error));
  }

  std::string json(const CapturedFrame& frame, PokerCommandI& command) {
    const std::string more = circumstancesJson(frame, options_.offsets);
    SrvCompressedCommands* batch = asBatch(command);
    if (batch == nullptr) return commandJson(command, options_.secrets, more);
    // Opening it takes its body away.
    std::string whole = commandJson(command, options_.secrets);
    whole.back() = ',';
    whole += "\"commands\":[";
    open(frame, *batch);
    CapturedFrame inside;
    for (bool first = true; content_.next(inside); first = false) {
      if (!first) whole += ',';
      whole += commandJson(*decodeInside(frame, inside), options_.secrets);
    }
    whole += ']';
    if (!more.empty()) whole.append(",") += more;
    return whole += '}';
  }

  /// One line, or one more for each command inside a batch.
  std::string lines(const CapturedFrame& frame, PokerCommandI& command, std::string_view indent) {
    std::string text(indent);
    if (indent.empty()) {
      text += paint_.aside(std::to_string(frame.offset)) + ' ';
      if (const std::string where = circumstancesText(frame); !where.empty()) text += paint_.aside(where) + ' ';
    }
    text += paint_.name(CommandFactory::find(command)->name());
    if (const std::string fields = fieldsAsText(command, options_.secrets); !fields.empty()) text += ' ' + fields;
    if (const auto shown = playerText(command, options_.secrets); shown && !shown->empty()) {
      text += "  " + paint_.speech("# " + poker::quoted(*shown));
    }
    text += '\n';
    if (SrvCompressedCommands* batch = asBatch(command)) {
      open(frame, *batch);
      CapturedFrame inside;
      while (content_.next(inside)) text += lines(inside, *decodeInside(frame, inside), "  ");
    }
    return text;
  }

  void head(const CapturedFrame& frame, std::string_view name) {
    std::string line = annotated_++ == 0 ? "" : "\n";
    line.append(paint_.name(name)) += ", " + std::to_string(frame.bytes.size()) + " bytes";
    if (const std::string where = circumstancesText(frame); !where.empty()) line += ", " + where;
    output_.line(line);
    output_.write(annotationHead(paint_));
  }

  void annotation(const CapturedFrame& frame, PokerCommandI& command) {
    head(frame, CommandFactory::find(command)->name());
    output_.write(cmdproc::annotate(frame, options_.secrets, paint_));
    if (const auto shown = playerText(command, options_.secrets); shown && !shown->empty()) {
      output_.line("         " + paint_.speech("# the player reads: " + poker::quoted(*shown)));
    }
    SrvCompressedCommands* batch = asBatch(command);
    if (batch == nullptr) return;
    open(frame, *batch);
    output_.line("         # inside of the batch, with offsets among the inflated bytes:");
    CapturedFrame inside;
    while (content_.next(inside)) {
      const CommandHandle<> each = decodeInside(frame, inside);
      output_.write(cmdproc::annotate(inside, options_.secrets, paint_));
    }
  }

  /// @param message  why the frame cannot be read
  void annotation(const CapturedFrame& frame, std::string_view message) {
    const bool hasFrame = frame.bytes.size() >= kShortestFrame;
    const CommandClass* named =
        hasFrame
            ? CommandFactory::find(static_cast<ProcessorFamily>(frame.bytes[kLengthSlot + 1]), frame.bytes[kLengthSlot])
            : nullptr;
    head(frame, (named == nullptr ? "no command" : std::string(named->name())) + ", which cannot be read");
    output_.write(cmdproc::annotate(frame, options_.secrets, paint_, message));
  }

  const Options& options_;
  Paint paint_{wantsColour(stdout)};
  Output output_;
  BatchContent content_;
  std::uint64_t annotated_ = 0;
};

}  // namespace

void addDecode(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("decode", "the commands of a stream or a capture, as text or JSON");
  const auto options = std::make_shared<Options>();
  addInput(subcommand, options->input);
  CLI::Option* json = subcommand.add_flag("--json", options->json, "one JSON object a line, which encode reads");
  subcommand
      .add_flag("--annotate", options->annotate, "a table a command: offset, bytes, type, value, meaning of each field")
      ->excludes(json);
  subcommand.add_flag("--keep-going", options->keepGoing, "pass over what cannot be read, and end with status 1");
  subcommand.add_flag("--offsets", options->offsets, "with --json: the offset of each command, also in a stream");
  addShowSecrets(subcommand, options->secrets);
  subcommand.callback([&action, options] {
    action = [options] {
      warnOfSecrets(options->secrets);
      return Decoder(*options).run();
    };
  });
}

}  // namespace poker::cmdproc

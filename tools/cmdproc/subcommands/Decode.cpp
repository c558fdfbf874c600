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

/// Writes each frame in the form that was asked for.
class Decoder {
 public:
  explicit Decoder(const Options& options) : options_(options) {}

  ExitStatus run() {
    const auto input = openInput(options_.input);
    CapturedFrame frame;
    while (input->next(frame)) {
      const bool readable = write(frame);
      if (!readable && !options_.keepGoing) break;
      progress_.update(input->position(), input->size(), frame.number, "commands");
    }
    output_.flush();
    return status_;
  }

 private:
  /// @return false when the frame cannot be read, which has been told
  bool write(const CapturedFrame& frame) {
    if (!frame.problem.empty()) {
      if (options_.annotate && !frame.bytes.empty()) annotateDamaged(frame, frame.problem);
      find(failureText(frame));
      return false;
    }
    DecodeResult decoded = decodeFrame(frame.bytes);
    if (!decoded) {
      if (options_.annotate) annotateDamaged(frame, decoded.error.message);
      find(failureText(frame, decoded.error));
      return false;
    }
    if (options_.annotate) {
      annotate(frame, *decoded.command);
    } else if (options_.json) {
      output_.line(json(frame, *decoded.command));
    } else {
      output_.write(lines(frame, *decoded.command));
    }
    // Of a batch that cannot be looked into, all that travelled is told: the stream goes on behind it.
    if (!inside_.empty()) find("offset " + std::to_string(frame.offset) + ": SrvCompressedCommands: " + inside_);
    inside_.clear();
    return true;
  }

  void find(const std::string& finding) {
    status_ = ExitStatus::Findings;
    output_.flush();
    progress_.clear();
    complain(finding);
  }

  /// Calls `f(frame, command)` for each command inside the batch, which loses its body. What cannot be read of it goes into
  /// inside_, and ends this.
  /// @return how the batch's own fields are to be shown: its body tells the secrets of what is inside
  template <class F>
  JsonSecrets forEachInside(SrvCompressedCommands& batch, F&& f) {
    if (const std::string_view problem = content_.open(batch); !problem.empty()) {
      inside_ = "the batch " + std::string(problem);
      return options_.secrets;
    }
    const bool shown = options_.secrets == JsonSecrets::kShow || !content_.hasSecrets();
    CapturedFrame inside;
    while (content_.next(inside)) {
      DecodeResult decoded = decodeFrame(inside.bytes);
      if (!decoded) {
        inside_ = "inside of the batch, " + failureText(inside, decoded.error);
        f(inside, nullptr, decoded.error.message);
        return options_.secrets;
      }
      f(inside, decoded.command.get(), {});
    }
    return shown ? JsonSecrets::kShow : JsonSecrets::kMask;
  }

  std::string json(const CapturedFrame& frame, PokerCommandI& command) {
    const std::string more = circumstancesJson(frame, options_.offsets);
    SrvCompressedCommands* batch = asBatch(command);
    if (batch == nullptr) return commandJson(command, options_.secrets, more);
    // Looking into it takes its body away.
    const std::string shown = commandJson(command, JsonSecrets::kShow), masked = commandJson(command, options_.secrets);
    std::string commands;
    const JsonSecrets own = forEachInside(*batch, [&](const CapturedFrame&, PokerCommandI* each, std::string_view) {
      if (each != nullptr) commands.append(commands.empty() ? "" : ",") += commandJson(*each, options_.secrets);
    });
    std::string whole = own == JsonSecrets::kShow ? shown : masked;
    whole.pop_back();
    if (inside_.empty()) {
      whole.append(",\"commands\":[") += commands + ']';
    } else {
      appendJsonString(whole.append(",\"problem\":"), inside_);
    }
    if (!more.empty()) whole.append(",") += more;
    return whole += '}';
  }

  std::string line(const PokerCommandI& command, JsonSecrets secrets) const {
    std::string text = paint_.name(CommandFactory::find(command)->name());
    if (const std::string fields = fieldsAsText(command, secrets); !fields.empty()) text += ' ' + fields;
    if (const std::string shown = speech(command); !shown.empty()) text += "  " + paint_.speech("# " + shown);
    return text += '\n';
  }

  std::string speech(const PokerCommandI& command) const {
    const auto shown = playerText(command, options_.secrets);
    return shown && !shown->empty() ? poker::quoted(*shown) : std::string();
  }

  /// One line, and one more for each command inside a batch.
  std::string lines(const CapturedFrame& frame, PokerCommandI& command) {
    std::string text = paint_.aside(std::to_string(frame.offset)) + ' ';
    if (const std::string where = circumstancesText(frame); !where.empty()) text += paint_.aside(where) + ' ';
    SrvCompressedCommands* batch = asBatch(command);
    if (batch == nullptr) return text + line(command, options_.secrets);
    const std::string shown = line(command, JsonSecrets::kShow), masked = line(command, options_.secrets);
    std::string inside;
    const JsonSecrets own = forEachInside(*batch, [&](const CapturedFrame&, PokerCommandI* each, std::string_view) {
      if (each != nullptr) inside.append("  ") += line(*each, options_.secrets);
    });
    return text + (own == JsonSecrets::kShow ? shown : masked) + inside;
  }

  /// The heading of a table, and the table.
  std::string table(const CapturedFrame& frame, std::string_view name, JsonSecrets secrets,
                    std::string_view message = {}) const {
    std::string text = paint_.name(name) + ", " + std::to_string(frame.bytes.size()) + " bytes";
    if (const std::string where = circumstancesText(frame); !where.empty()) text += ", " + where;
    return text + '\n' + annotationHead(paint_) + cmdproc::annotate(frame, secrets, paint_, message);
  }

  std::string table(const CapturedFrame& frame, const PokerCommandI& command, JsonSecrets secrets) const {
    std::string text = table(frame, CommandFactory::find(command)->name(), secrets);
    if (const std::string shown = speech(command); !shown.empty()) {
      text += "         " + paint_.speech("# the player reads: " + shown) + '\n';
    }
    return text;
  }

  std::string damagedTable(const CapturedFrame& frame, std::string_view message) const {
    const bool hasFrame = frame.bytes.size() >= kShortestFrame;
    const CommandClass* named =
        hasFrame
            ? CommandFactory::find(static_cast<ProcessorFamily>(frame.bytes[kLengthSlot + 1]), frame.bytes[kLengthSlot])
            : nullptr;
    return table(frame, (named == nullptr ? "no command" : std::string(named->name())) + ", which cannot be read",
                 options_.secrets, message);
  }

  void writeTable(const std::string& text) {
    if (tables_++ != 0) output_.line("");
    output_.write(text);
  }

  void annotate(const CapturedFrame& frame, PokerCommandI& command) {
    SrvCompressedCommands* batch = asBatch(command);
    if (batch == nullptr) return writeTable(table(frame, command, options_.secrets));
    std::string inside;
    const JsonSecrets own =
        forEachInside(*batch, [&](const CapturedFrame& each, PokerCommandI* decoded, std::string_view message) {
          inside += "\nInside of the batch, offsets among the inflated bytes: ";
          inside += decoded == nullptr ? damagedTable(each, message) : table(each, *decoded, options_.secrets);
        });
    writeTable(table(frame, command, own) + inside);
    if (!inside_.empty()) output_.line("         " + paint_.alarm("^ " + inside_));
  }

  void annotateDamaged(const CapturedFrame& frame, std::string_view message) {
    writeTable(damagedTable(frame, message));
  }

  const Options& options_;
  Paint paint_{wantsColour(stdout)};
  Output output_;
  Progress progress_;
  BatchContent content_;
  std::string inside_;  // what cannot be read inside of the batch that is being written
  ExitStatus status_ = ExitStatus::Clean;
  std::uint64_t tables_ = 0;
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

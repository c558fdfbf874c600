#include <CommandProcessor/commands/session/SrvPing.h>
#include <hostkit/CommandFactory.h>
#include <hostkit/Encode.h>
#include <inspect/CommandFields.h>
#include <inspect/CommandText.h>
#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/input/Batches.h>
#include <tools/cmdproc/input/Bytes.h>
#include <tools/cmdproc/output/Output.h>

#include <fmt/format.h>

#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace poker::cmdproc {

namespace {

struct Options {
  std::string path = "-";
  bool hex = false;
  bool keepGoing = false;
  JsonSecrets secrets = JsonSecrets::kMask;
};

/// A line that is no command.
class BadLine : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Lines of any length, one after the other.
class Lines {
 public:
  explicit Lines(ByteSource& bytes) : bytes_(bytes) {}

  /// @return false at the end
  bool next(std::string& line) {
    line.clear();
    for (;;) {
      const std::size_t end = buffer_.find('\n', taken_);
      if (end != std::string::npos) {
        line.append(buffer_, taken_, end - taken_);
        taken_ = end + 1;
        return true;
      }
      line.append(buffer_, taken_);
      if (line.size() > kLongestLine) throw std::runtime_error("a line of more than 1 GB is no command");
      buffer_.resize(kBuffer);
      taken_ = 0;
      const std::size_t size = bytes_.read({reinterpret_cast<std::uint8_t*>(buffer_.data()), buffer_.size()});
      buffer_.resize(size);
      if (size == 0) return !line.empty();
    }
  }

 private:
  static constexpr std::size_t kBuffer = 256 * 1024;
  static constexpr std::size_t kLongestLine = 1'000'000'000;

  ByteSource& bytes_;
  std::string buffer_;
  std::size_t taken_ = 0;
};

/// Counts the elements of all lists and maps of a command.
class Elements : public FieldVisitor {
 public:
  std::size_t count = 0;

  void number(const Field&, std::int64_t&) override {}
  void real(const Field&, double&) override {}
  void text(const Field&, std::string&) override {}
  void bytes(const Field&, std::vector<std::uint8_t>&) override {}
  void beginRecord(const Field&) override {}
  void endRecord(const Field&) override {}
  std::size_t beginList(const Field&, std::size_t size) override {
    count += size;
    return size;
  }
  void endList(const Field&) override {}
  std::size_t beginMap(const Field& field, std::size_t size) override { return beginList(field, size); }
  void endMap(const Field&) override {}
};

std::size_t elementsOf(const PokerCommandI& command) {
  Elements elements;
  CommandFields::of(command)->visit(command, elements);
  return elements.count;
}

/// Makes commands of JSON objects, and bytes of commands.
class Encoder {
 public:
  explicit Encoder(JsonSecrets secrets) : secrets_(secrets) {}

  /// The bytes of the command that the line tells; valid until the next call.
  /// @throws BadLine
  std::span<const std::uint8_t> encode(std::string_view line) {
    try {
      return write(*make(JsonObject(line), true));
    } catch (const FieldValueError& error) {
      throw BadLine(error.what());
    } catch (const EncodeError& error) {
      throw BadLine(error.what());
    }
  }

 private:
  CommandHandle<> make(const JsonObject& object, bool mayBeBatch) {
    const std::optional<std::string> name = object.text("command");
    if (!name) throw BadLine("there is no \"command\" that names a class");
    const CommandClass* named = CommandFactory::find(*name);
    if (named == nullptr) throw BadLine("no command class is called " + poker::quoted(*name));
    try {
      CommandHandle<> command(named->create());
      const auto fields = object.object("fields");
      if (!fields) throw BadLine(object.has("fields") ? "\"fields\" takes an object" : "there are no \"fields\"");
      FieldsFromJson reader(*fields, secrets_);
      reader.run([&](FieldVisitor& visitor) { CommandFields::of(*command)->assign(*command, visitor); });
      if (reader.elements() != elementsOf(*command)) throw BadLine(*name + ": a set or map has the same key twice");
      if (SrvCompressedCommands* batch = asBatch(*command)) {
        if (!mayBeBatch) throw BadLine("a batch cannot hold another one");
        if (object.has("commands") && batch->compressedSize() == 0) fillBatch(*batch, object);
      }
      return command;
    } catch (const FieldValueError& error) {
      throw BadLine(*name + ": " + error.what());
    }
  }

  std::span<const std::uint8_t> write(PokerCommandI& command) {
    if (auto* ping = dynamic_cast<SrvPing*>(&command)) return writePing(*ping);
    return encodeCommand(command, buffer_);
  }

  /// A SrvPing takes the time when it is written: it gets the start that leads to what the line tells.
  std::span<const std::uint8_t> writePing(SrvPing& ping) {
    const std::uint8_t told = ping.inServer();
    std::span<const std::uint8_t> bytes;
    do {
      ping.init(static_cast<std::int32_t>(std::time(nullptr) - told));
      bytes = encodeCommand(ping, buffer_);
    } while (ping.inServer() != told);  // a second has just ended
    return bytes;
  }

  /// Compresses the commands that stand beside the fields, which have no body of their own.
  void fillBatch(SrvCompressedCommands& batch, const JsonObject& object) {
    const auto commands = object.objects("commands");
    if (!commands) throw BadLine("SrvCompressedCommands: \"commands\" takes an array of objects");
    std::vector<std::uint8_t> frames;
    for (const JsonObject& each : *commands) {
      const auto bytes = write(*make(each, false));
      frames.insert(frames.end(), bytes.begin(), bytes.end());
      if (frames.size() > BatchContent::kMost) throw BadLine("SrvCompressedCommands: more than a batch may hold");
    }
    batch.init(frames.data(), static_cast<unsigned>(frames.size()));
  }

  JsonSecrets secrets_;
  SerializeCommandBuf buffer_{4096};
};

ExitStatus encode(const Options& options) {
  FileBytes input(options.path);
  if (!options.hex && isTerminal(stdout)) {
    throw UsageError("encode writes bytes, which are not for a terminal: redirect them, or ask for --hex");
  }
  Lines lines(input);
  Encoder encoder(options.secrets);
  Output output;
  Progress progress;
  ExitStatus status = ExitStatus::Clean;
  std::string line;
  for (std::uint64_t number = 1; lines.next(line); ++number) {
    progress.update(input.position(), input.size(), number, "lines");
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    try {
      const auto bytes = encoder.encode(line);
      if (options.hex) {
        output.line(bytesAsText(bytes));
      } else {
        output.write({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
      }
    } catch (const BadLine& error) {
      status = ExitStatus::Findings;
      output.flush();
      progress.clear();
      complain(fmt::format("line {}: {}", number, error.what()));
      if (!options.keepGoing) break;
    }
  }
  output.flush();
  return status;
}

}  // namespace

void addEncode(CLI::App& program, Action& action) {
  CLI::App& subcommand = *program.add_subcommand("encode", "a stream of the commands that JSON lines tell");
  const auto options = std::make_shared<Options>();
  subcommand.add_option("FILE", options->path, "JSON lines as decode --json writes them; - for standard input")
      ->type_name("")
      ->capture_default_str();
  subcommand.add_flag("--hex", options->hex, "write hexadecimal text, one command a line");
  subcommand.add_flag("--keep-going", options->keepGoing,
                      "pass over lines that are no commands, and end with status 1");
  subcommand.add_flag_callback(
      "--clear-secrets", [options] { options->secrets = JsonSecrets::kShow; },
      "take *** in the place of a secret for what it says, not for one that was masked");
  subcommand.callback([&action, options] { action = [options] { return encode(*options); }; });
}

}  // namespace poker::cmdproc

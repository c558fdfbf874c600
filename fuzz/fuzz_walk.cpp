// A frame read by the schema alone: it succeeds and fails where the class does, its pieces cover the bytes; and everything
// that is told of the frame, whatever it holds, is text that a terminal can show.

#include <fuzz/support/Frames.h>
#include <hostkit/Decode.h>
#include <inspect/CommandJson.h>
#include <inspect/CommandText.h>
#include <inspect/capture/Redact.h>
#include <inspect/schema/WireWalk.h>
#include <tools/cmdproc/input/DecodeFrame.h>
#include <tools/cmdproc/output/Annotation.h>

#include <algorithm>

using namespace poker;
using namespace poker::fuzz;

namespace {

void requirePrintable(std::string_view text) {
  require(std::all_of(text.begin(), text.end(), [](char c) { return (c >= 0x20 && c <= 0x7E) || c == '\n'; }),
          "what is told of a frame is printable");
}

void checkWalk(const CommandClass& named, std::span<const std::uint8_t> command, const DecodeResult& decoded) {
  std::size_t next = 2;
  const auto failure = walkCommand(*CommandSchema::find(named.name()), command, [&](const WirePiece& piece) {
    require(piece.offset == next, "pieces follow each other");
    require(piece.bytes.data() == command.data() + next && piece.bytes.size() <= command.size() - next,
            "a piece is what stands at its offset");
    next += piece.bytes.size();
  });
  require(failure.has_value() == !decoded, "the walk succeeds exactly when the class does");
  if (!failure) return require(next == command.size(), "the pieces are all of the frame");
  const DecodeError& error = decoded.error;
  require(next == failure->offset, "the walk fails behind its last piece");
  require(failure->offset == error.offset && failure->remaining == error.remaining,
          "the walk fails where the class does");
  require((failure->field == nullptr) == (error.kind == DecodeError::Kind::TrailingBytes),
          "the walk knows trailing bytes from missing ones");
  requirePrintable(failure->problem);
}

void checkRedacted(const CommandClass& named, const Bytes& frame, bool readable) {
  static Bytes redacted;
  redacted = frame;
  redactSecrets(redacted);
  require(redacted.size() == frame.size() && std::equal(frame.begin(), frame.begin() + 6, redacted.begin()),
          "a redacted frame keeps its size and its head");
  require(CommandSchema::find(named.name())->hasSecrets() || redacted == frame, "only secrets are redacted");
  if (readable) require(static_cast<bool>(cmdproc::decodeFrame(redacted)), "a redacted frame can be read as before");
}

}  // namespace

std::vector<Bytes> fuzz::seeds() { return goldenCommands(); }
void fuzz::mutate(Bytes& input, Random& random) { mutateCommand(input, random); }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Bytes frame;
  static const cmdproc::Paint kPlain(false);
  if (size < 2) return 0;
  const std::size_t turn = size + data[size - 1];  // what is slow beside the rest is not done for each input
  frame.clear();
  appendFrame(frame, {data, size});
  const CapturedFrame captured{.bytes = frame};
  const std::span<const std::uint8_t> command = std::span(frame).subspan(4);
  const CommandClass* named = classOf(command);
  const DecodeResult decoded = cmdproc::decodeFrame(frame);
  require(named != nullptr || !decoded, "a frame without a class is no command");
  if (named != nullptr && named->travels) {
    checkWalk(*named, command, decoded);
    if (turn % 4 == 0) checkRedacted(*named, frame, static_cast<bool>(decoded));
  }
  if (turn % 16 > 1) return 0;
  const auto secrets = size % 2 == 0 ? JsonSecrets::kMask : JsonSecrets::kShow;
  requirePrintable(cmdproc::annotate(captured, secrets, kPlain, decoded.error.message));
  if (decoded) {
    requirePrintable(fieldsAsText(*decoded.command, secrets));
    requirePrintable(commandJson(*decoded.command, secrets));
  } else {
    requirePrintable(cmdproc::failureText(captured, decoded.error));
  }
  return 0;
}

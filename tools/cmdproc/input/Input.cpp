#include <tools/cmdproc/input/Bytes.h>
#include <tools/cmdproc/input/Input.h>
#include <tools/cmdproc/input/StreamInput.h>

namespace poker::cmdproc {

void addInput(CLI::App& subcommand, InputOptions& options) {
  subcommand.add_option("FILE", options.path, "stream, text of bytes, or capture to read; - for standard input")
      ->type_name("")
      ->capture_default_str();
  subcommand.add_flag("--hex", options.hex, "the bytes are hexadecimal text; # begins a comment");
  subcommand.add_option("--max-frame", options.longestFrame, "the longest frame to believe in, in bytes")
      ->type_name("BYTES")
      ->check(CLI::Range(std::uint32_t{6}, std::uint32_t{1} << 31).description(""))
      ->capture_default_str();
}

std::unique_ptr<FrameSource> openInput(const InputOptions& options) {
  auto file = std::make_unique<FileBytes>(options.path);
  if (!options.hex) return std::make_unique<StreamInput>(std::move(file), options.longestFrame);
  return std::make_unique<StreamInput>(std::make_unique<HexBytes>(std::move(file)), options.longestFrame);
}

}  // namespace poker::cmdproc

#pragma once

#include <inspect/capture/CapturedFrame.h>
#include <tools/cmdproc/Program.h>

#include <cstdint>
#include <memory>
#include <string>

namespace poker::cmdproc {

/// Where the commands come from that a subcommand reads.
struct InputOptions {
  std::string path = "-";  ///< of a file; "-" for standard input
  bool hex = false;        ///< the bytes as hexadecimal text
  std::uint32_t longestFrame = 64 * 1024 * 1024;
};

/// Adds FILE, --hex and --max-frame.
void addInput(CLI::App& subcommand, InputOptions& options);
/// Adds CAPTURE and --max-frame.
void addCapture(CLI::App& subcommand, InputOptions& options);

/// Opens a stream, hexadecimal text or a capture, which is recognised by its first bytes.
/// @throws std::runtime_error  the input cannot be read
std::unique_ptr<FrameSource> openInput(const InputOptions& options);

/// The same for what tells who sent a command and when.
/// @throws UsageError  the input is no capture
std::unique_ptr<FrameSource> openCapture(const InputOptions& options);

}  // namespace poker::cmdproc

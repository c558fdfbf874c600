#pragma once

#include <CommandProcessor/types/FieldJson.h>
#include <CLI/App.hpp>

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace poker::cmdproc {

/// Standard output with a large buffer.
class Output {
 public:
  Output();
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  void write(std::string_view text);
  void line(std::string_view text);
  /// @throws std::runtime_error  not all could be written
  void flush();

 private:
  std::string buffer_;
};

/// One line on standard error: "cmdproc: ...".
void complain(std::string_view message);

/// Whether to write in colour to the stream: when it is a terminal that can, and NO_COLOR is not set.
bool wantsColour(std::FILE* stream);
bool isTerminal(std::FILE* stream);

/// Adds --show-secrets.
void addShowSecrets(CLI::App& subcommand, JsonSecrets& secrets);
/// Says so, when secrets are to be shown.
void warnOfSecrets(JsonSecrets secrets);

/// How far a long input is read, on one line of standard error that is written again; nothing at all where standard
/// error is no terminal, or within the first second.
class Progress {
 public:
  Progress();
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Cheap: looks at the clock once in a while.
  /// @param done   bytes that were read, of `total` where that is known
  /// @param items  that were read, and what they are called
  void update(std::uint64_t done, std::optional<std::uint64_t> total, std::uint64_t items, std::string_view what);
  /// Removes the line.
  void clear();

 private:
  void show(std::uint64_t done, std::optional<std::uint64_t> total, std::uint64_t items, std::string_view what);

  bool enabled_;
  bool shown_ = false;
  unsigned calls_ = 0;
  std::int64_t begun_;
  std::int64_t last_;
};

}  // namespace poker::cmdproc

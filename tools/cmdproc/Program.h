#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <functional>
#include <stdexcept>

namespace poker::cmdproc {

/// What the program ends with.
enum class ExitStatus : int {
  Clean = 0,
  Findings = 1,  ///< data that cannot be read, differences, faults in a hand
  Failed = 2,    ///< wrong usage, a file that cannot be read or written
};

/// A mistake in how the program is used, beyond what the options' own checks find; told as "cmdproc: ...", status 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What main() runs once the command line is parsed: the chosen subcommand sets it.
using Action = std::function<ExitStatus()>;

// Each subcommand adds itself to the program: its options, its help, and what it does. What it reads the options into
// lives in the closure that becomes the action. One source a subcommand, in subcommands/.

void addList(CLI::App& program, Action& action);
void addDescribe(CLI::App& program, Action& action);
void addDecode(CLI::App& program, Action& action);
void addEncode(CLI::App& program, Action& action);
void addStats(CLI::App& program, Action& action);
void addTexts(CLI::App& program, Action& action);
void addHands(CLI::App& program, Action& action);
void addAudit(CLI::App& program, Action& action);
void addDissector(CLI::App& program, Action& action);
void addDocs(CLI::App& program, Action& action);
void addManual(CLI::App& program, Action& action);
void addCompletion(CLI::App& program, Action& action);

/// All of them, in the order of the help.
void addSubcommands(CLI::App& program, Action& action);

/// Runs the program. Results go to standard output, messages to standard error.
/// @return the exit status
int runProgram(int argc, char** argv);

}  // namespace poker::cmdproc

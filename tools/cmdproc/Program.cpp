#include <inspect/CommandText.h>
#include <tools/cmdproc/Program.h>
#include <tools/cmdproc/output/Output.h>

#include <cstdio>
#include <iostream>
#include <new>

namespace poker::cmdproc {

namespace {

constexpr const char* kDescription =
    "Sees, writes and checks the commands that a poker client and its server exchange.";
constexpr const char* kFooter =
    "Results go to standard output, messages to standard error.\n"
    "Exit status: 0 clean, 1 findings or bad data, 2 wrong usage or input and output that fail.\n"
    "Secrets are shown as *** unless --show-secrets is given.";

}  // namespace

void addSubcommands(CLI::App& program, Action& action) {
  addList(program, action);
  addDescribe(program, action);
  addDecode(program, action);
  addEncode(program, action);
  addStats(program, action);
  addTexts(program, action);
  addHands(program, action);
  addAudit(program, action);
  addDissector(program, action);
  addDocs(program, action);
  addManual(program, action);
  addCompletion(program, action);
}

int runProgram(int argc, char** argv) {
  CLI::App program(kDescription, "cmdproc");
  program.require_subcommand(1);
  program.set_version_flag("--version", "cmdproc " CMDPROC_VERSION);
  Action action;
  addSubcommands(program, action);
  program.footer(kFooter);  // not that of the subcommands
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {  // --help, --version
      program.exit(error);
      std::cout.flush();
      if (std::cout && std::fflush(stdout) == 0) return static_cast<int>(ExitStatus::Clean);
      complain("standard output cannot be written");
      return static_cast<int>(ExitStatus::Failed);
    }
    const auto chosen = program.get_subcommands();
    if (chosen.empty() && argc > 1 && argv[1][0] != '-') {
      complain("no subcommand is called " + poker::quoted(argv[1]) + " (see cmdproc --help)");
      return static_cast<int>(ExitStatus::Failed);
    }
    complain(std::string(error.what()) + " (see cmdproc " + (chosen.empty() ? "" : chosen[0]->get_name() + ' ') +
             "--help)");
    return static_cast<int>(ExitStatus::Failed);
  }
  try {
    return static_cast<int>(action());
  } catch (const std::bad_alloc&) {
    complain("out of memory");
  } catch (const std::exception& error) {
    complain(error.what());
  }
  return static_cast<int>(ExitStatus::Failed);
}

}  // namespace poker::cmdproc

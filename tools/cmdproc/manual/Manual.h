#pragma once

#include <tools/cmdproc/manual/AppTree.h>

#include <ctime>
#include <string>
#include <vector>

namespace poker::cmdproc {

struct ManualPage {
  std::string file;  ///< "cmdproc-decode.1"
  std::string text;  ///< mdoc(7)
};

/// The program's page, one of each subcommand, and that of the protocol. Descriptions and examples come from the texts
/// in tools/cmdproc/manual, options from the program.
/// @param date  what the pages say of when they are from
/// @throws std::logic_error  a subcommand has no text
std::vector<ManualPage> manualPages(const ProgramText& program, std::time_t date);

}  // namespace poker::cmdproc

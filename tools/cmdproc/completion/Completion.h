#pragma once

#include <tools/cmdproc/manual/AppTree.h>

#include <string>

namespace poker::cmdproc {

enum class Shell { Bash, Zsh, Fish };

/// A script that lets the shell complete the program's subcommands, options and arguments.
std::string completionScript(const ProgramText& program, Shell shell);

}  // namespace poker::cmdproc

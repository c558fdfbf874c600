#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace poker::cmdproc {

/// What an argument or an option's value is, as far as a shell can help with it.
enum class ValueKind { None, Text, File, Folder, CommandClass, Choice };

/// An option, a flag or an argument of the program, as its help has it.
struct OptionText {
  std::vector<std::string> names;    ///< with their dashes, "-h" and "--help"; empty for an argument
  std::string value;                 ///< what stands for its value: "FILE", "bash|zsh|fish"; empty for a flag
  std::string description;           ///< in one line
  std::string defaultValue;          ///< empty: none, or none to be told
  std::vector<std::string> choices;  ///< of a Choice
  ValueKind kind = ValueKind::None;
  bool required = false;
  bool repeats = false;

  bool isArgument() const { return names.empty(); }
};

struct SubcommandText {
  std::string name;
  std::string description;
  std::string footer;
  std::vector<OptionText> options;    ///< flags too
  std::vector<OptionText> arguments;  ///< in their order
};

/// The program itself, and its subcommands in the order of the help.
struct ProgramText {
  SubcommandText program;
  std::vector<SubcommandText> subcommands;
};

/// Reads what the options' definitions say. What an argument is follows from its name: FILE and CAPTURE, DIR, CLASS.
ProgramText programText(const CLI::App& program);

}  // namespace poker::cmdproc

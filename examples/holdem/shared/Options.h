#pragma once

#include <examples/holdem/shared/Endpoint.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <chrono>
#include <cstdio>
#include <string>

namespace poker::holdem {

// Options that both programs have. What is added here fills the variable that it names, which must outlive the parsing,
// and whose value until then is the default.

/// A time in seconds, with a fraction where one is wanted; 0 for none.
void addSeconds(CLI::App& app, const std::string& name, std::chrono::milliseconds& value, const std::string& help);

/// HOST:PORT.
CLI::Option* addEndpoint(CLI::App& app, const std::string& name, Endpoint& value, const std::string& help);

enum class Colour { Auto, Always, Never };
/// --color=auto|always|never
void addColour(CLI::App& app, Colour& value);
/// Whether to write in colour to the stream: with Auto when it is a terminal that can, and NO_COLOR is not set.
bool wantsColour(Colour choice, std::FILE* stream);

/// Parses; a repeated option counts as its last.
/// @return -1 to go on, or the status to exit with: 0 after --help, 2 after a mistake, which has been told
int parseOptions(CLI::App& app, int argc, char** argv);

}  // namespace poker::holdem

#pragma once

// Commands as bytes: type code, family, fields; without the length slot unless it is said.

#include <CommandProcessor/core/PokerCommandI.h>
#include <fuzz/support/Target.h>
#include <hostkit/CommandFactory.h>

#include <string>
#include <string_view>

namespace poker::fuzz {

/// A line of the golden files.
struct GoldenLine {
  std::string name;
  std::string json;
  Bytes bytes;
};

/// The golden lines of the folder below tests/golden: "" for those of the commands, "values" for those of the value types.
std::vector<GoldenLine> goldenLines(std::string_view folder = {});
/// The bytes of all golden commands.
std::vector<Bytes> goldenCommands();

/// The class that the two first bytes name; null when there is none.
const CommandClass* classOf(std::span<const std::uint8_t> command);

/// Changes a command by what is known of its class: an object of it gets other values, or the bytes of one field, count
/// or text change, or fields move, or it becomes another class's. Some changes know nothing.
void mutateCommand(Bytes& command, Random& random);
/// A command of any class with random values, as its class writes it.
Bytes randomCommand(Random& random);

/// A number that differs where any value does that the command would send.
std::uint64_t digestOf(const PokerCommandI& command);

/// Appends the command with its length slot.
void appendFrame(Bytes& stream, std::span<const std::uint8_t> command);

/// One of the numbers at which readers fail: the ends of ranges, what is left, next to what was there.
std::uint64_t edge(std::uint64_t held, std::size_t left, Random& random);

}  // namespace poker::fuzz

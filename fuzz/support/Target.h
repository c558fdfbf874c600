#pragma once

// What a fuzz target defines, and what it may use. The engine beside (engine/) is libFuzzer or a plain replay.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Defined by each target: tries one input, any bytes, and calls violated() when a rule is broken. Leaves nothing behind
/// but memory that the next input uses again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace poker::fuzz {

using Bytes = std::vector<std::uint8_t>;

/// The same numbers from the same seed on every machine.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t operator()() {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t mixed = (state_ ^ state_ >> 30) * 0xBF58476D1CE4E5B9;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
    return mixed ^ mixed >> 31;
  }
  /// 0 to n - 1; n is not 0.
  std::size_t below(std::size_t n) { return static_cast<std::size_t>((*this)() % n); }
  bool oneIn(std::size_t n) { return below(n) == 0; }
  std::uint8_t byte() { return static_cast<std::uint8_t>((*this)()); }

 private:
  std::uint64_t state_;
};

/// Defined by each target: inputs to begin with, from which all others grow.
std::vector<Bytes> seeds();
/// Defined by each target: changes an input in a way that leads somewhere.
void mutate(Bytes& input, Random& random);

/// The engine's own mutation, which knows nothing of formats, of the bytes from `from` on.
void mutateBytes(Bytes& input, Random& random, std::size_t from = 0);

/// Ends the process with the broken rule on standard error.
[[noreturn]] void violated(std::string_view rule);
inline void require(bool holds, std::string_view rule) {
  if (!holds) [[unlikely]]
    violated(rule);
}

inline std::string_view textOf(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}
inline Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

}  // namespace poker::fuzz

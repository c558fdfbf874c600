// The plain main of a fuzz target, for builds without libFuzzer: tries the target's seeds and the inputs of the files and
// folders given, looks whether trying them leaves memory behind, and goes on with seeded mutations of them.
//
//   fuzz_x [--runs N] [--seed S] [file or folder]...

#include <fuzz/support/Target.h>
#include <tests/support/AllocationCounter.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace poker::fuzz {

namespace {

struct Input {
  std::string name;
  Bytes bytes;
};

/// Elements keep their memory and change places: it can take a round for each of them until all have what the longest needs.
constexpr std::size_t kMostRounds = 1000;

Input current;  // what is being tried

void readFile(const std::filesystem::path& path, std::vector<Input>& inputs) {
  std::ifstream file(path, std::ios::binary);
  Input input{path.string(), {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}};
  if (!file) {
    std::fprintf(stderr, "%s: cannot be read\n", input.name.c_str());
    std::exit(2);
  }
  inputs.push_back(std::move(input));
}

/// Every file of a folder, always in the same order.
void readAll(const std::filesystem::path& path, std::vector<Input>& inputs) {
  if (!std::filesystem::is_directory(path)) return readFile(path, inputs);
  std::vector<std::filesystem::path> files(std::filesystem::directory_iterator(path), {});
  std::sort(files.begin(), files.end());
  for (const auto& file : files) readFile(file, inputs);
}

void tryAll(const std::vector<Input>& inputs) {
  for (const Input& input : inputs) {
    current.name = input.name;
    current.bytes = input.bytes;
    LLVMFuzzerTestOneInput(input.bytes.data(), input.bytes.size());
  }
}

std::uint64_t numberOf(std::string_view text) {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    std::fprintf(stderr, "usage: fuzz_x [--runs N] [--seed S] [file or folder]...\n");
    std::exit(2);
  }
  return number;
}

int replay(int count, char** arguments) {
  std::uint64_t runs = 0, seed = 1;
  std::vector<Input> inputs;
  for (const Bytes& each : seeds()) inputs.push_back({"a seed", each});
  const std::size_t ownSeeds = inputs.size();
  for (int i = 1; i < count; ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--runs" || argument == "--seed") {
      (argument == "--runs" ? runs : seed) = numberOf(i + 1 < count ? arguments[++i] : "");
    } else {
      readAll(argument, inputs);
    }
  }
  require(!inputs.empty(), "there are no inputs");

  // What a round sets aside for the next one (pools, lists that have grown) comes to an end; a leak does not.
  std::size_t rounds = 0;
  for (bool grows = true; grows; ++rounds) {
    require(rounds < kMostRounds, "memory grows with every round over the same inputs");
    const test::AllocationCounter memory;
    tryAll(inputs);
    grows = memory.alive() > 0;
  }

  Random random(seed);
  for (std::uint64_t run = 0; run < runs; ++run) {
    // A few steps away from an input, each of which is tried.
    if (run % 8 == 0) current.bytes = inputs[random.below(inputs.size())].bytes;
    current.name = "mutation " + std::to_string(run) + " of seed " + std::to_string(seed);
    mutate(current.bytes, random);
    const Bytes tried = current.bytes;
    LLVMFuzzerTestOneInput(tried.data(), tried.size());
  }
  std::printf("%zu seeds, %zu files, %llu mutations: %llu executions\n", ownSeeds, inputs.size() - ownSeeds,
              static_cast<unsigned long long>(runs), static_cast<unsigned long long>(rounds * inputs.size() + runs));
  return 0;
}

}  // namespace

void mutateBytes(Bytes& input, Random& random, std::size_t from) {
  if (from > input.size()) return;
  const auto place = [&](std::size_t offset) { return input.begin() + static_cast<std::ptrdiff_t>(offset); };
  const std::size_t at = from + random.below(input.size() - from + 1);
  switch (random.below(4)) {
    case 0:
      input.insert(place(at), 1 + random.below(8), random.byte());
      break;
    case 1:
      input.erase(place(at), place(at + random.below(std::min<std::size_t>(input.size() - at, 8) + 1)));
      break;
    default:
      if (at < input.size())
        input[at] = random.oneIn(2) ? random.byte() : std::uint8_t(input[at] ^ 1u << random.below(8));
  }
}

void violated(std::string_view rule) {
  std::fprintf(stderr, "broken rule: %.*s\nby %s:", static_cast<int>(rule.size()), rule.data(), current.name.c_str());
  for (const std::uint8_t byte : current.bytes) std::fprintf(stderr, " %02X", byte);
  std::fprintf(stderr, "\n");
  std::abort();
}

}  // namespace poker::fuzz

int main(int count, char** arguments) { return poker::fuzz::replay(count, arguments); }

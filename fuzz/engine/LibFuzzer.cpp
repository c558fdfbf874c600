// Between a target and libFuzzer: its mutator, and `fuzz_x --seeds FOLDER`, which writes the target's seeds.

#include <fuzz/support/Target.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace poker::fuzz {

namespace {

std::size_t mostBytes = 0;  // that the mutation under way may make

void writeSeeds(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  int number = 0;
  for (const Bytes& seed : seeds()) {
    std::ofstream file(folder / ("seed-" + std::to_string(number++)), std::ios::binary);
    file.write(reinterpret_cast<const char*>(seed.data()), static_cast<std::streamsize>(seed.size()));
    if (!file.flush()) {
      std::fprintf(stderr, "%s: cannot be written\n", folder.c_str());
      std::exit(1);
    }
  }
}

}  // namespace

void mutateBytes(Bytes& input, Random&, std::size_t from) {
  const std::size_t size = input.size();
  if (from > size || from >= mostBytes) return;
  input.resize(std::max(size, mostBytes));
  input.resize(from + LLVMFuzzerMutate(input.data() + from, std::min(size, mostBytes) - from, mostBytes - from));
}

void violated(std::string_view rule) {
  std::fprintf(stderr, "broken rule: %.*s\n", static_cast<int>(rule.size()), rule.data());
  std::abort();
}

}  // namespace poker::fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed) {
  static poker::fuzz::Bytes input;
  input.assign(data, data + size);
  poker::fuzz::Random random(seed);
  poker::fuzz::mostBytes = most;
  poker::fuzz::mutate(input, random);
  const std::size_t made = std::min(input.size(), most);
  std::copy_n(input.begin(), made, data);
  return made;
}

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
  if (*count == 3 && std::string_view((*arguments)[1]) == "--seeds") {
    poker::fuzz::writeSeeds((*arguments)[2]);
    std::exit(0);
  }
  return 0;
}

#include <CommandProcessor/core/Catalogue.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <iterator>
#include <tuple>

namespace poker {
namespace {

template <class ProcessorType>
constexpr CommandDirection directionOf() {
  switch (ProcessorTraits<ProcessorType>::family) {
    case ProcessorFamily::Client:
    case ProcessorFamily::ClientTour:
    case ProcessorFamily::ClientMisc:
      return CommandDirection::ClientToServer;
    default:
      return CommandDirection::ServerToClient;
  }
}

constexpr CommandDescription kCatalogue[] = {
#define COMMAND(FAMILY, CODE, CLASS, PROCESSOR, HANDLER) \
  {ProcessorFamily::FAMILY, CODE, #CLASS, directionOf<PROCESSOR##Type>(), #PROCESSOR, #HANDLER},
#include <CommandProcessor/core/CommandList.inc>
};
constexpr std::size_t kRows = std::size(kCatalogue);

constexpr auto pairOf(const CommandDescription& row) { return std::tuple(row.family, row.code); }
constexpr auto orderOf(const CommandDescription& row) { return std::tuple(row.family, row.code, row.name); }

static_assert(std::ranges::adjacent_find(kCatalogue, std::ranges::greater_equal{}, orderOf) == std::end(kCatalogue),
              "CommandList.inc is out of order (family, code, class name): findCommands searches it as it stands");

// Row numbers in the order of the class names.
constexpr auto kByName = [] {
  static_assert(kRows <= 256, "a row number is one byte");
  std::array<std::uint8_t, kRows> rows{};
  for (std::size_t i = 0; i < kRows; ++i) rows[i] = static_cast<std::uint8_t>(i);
  std::ranges::sort(rows, {}, [](std::uint8_t row) { return kCatalogue[row].name; });
  return rows;
}();

}  // namespace

std::span<const CommandDescription> commandCatalogue() { return kCatalogue; }

const CommandDescription* findCommand(std::string_view name) {
  const auto found = std::ranges::lower_bound(kByName, name, {}, [](std::uint8_t row) { return kCatalogue[row].name; });
  if (found == kByName.end() || kCatalogue[*found].name != name) return nullptr;
  return &kCatalogue[*found];
}

std::span<const CommandDescription> findCommands(ProcessorFamily family, std::uint8_t code) {
  const std::tuple pair(family, code);
  return {std::ranges::lower_bound(kCatalogue, pair, {}, pairOf),
          std::ranges::upper_bound(kCatalogue, pair, {}, pairOf)};
}

}  // namespace poker

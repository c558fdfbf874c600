#include <CommandProcessor/types/Card.h>

#include <cstddef>
#include <iterator>

namespace poker {

namespace {

// By value; null where there is no text.
constexpr const char* kSuits[] = {nullptr, "Club", "Diamond", "Heart", "Spade"};
constexpr const char* kRanks[] = {nullptr, "Ace", "2",  "3",    "4",     "5",    "6",  "7",
                                  "8",     "9",   "10", "Jack", "Queen", "King", "Ace"};
constexpr const char* kVisibilities[] = {nullptr, "Hidden", nullptr, "HiddenOwner", "Shown"};

template <std::size_t N, class Value>
const char* textOf(const char* const (&texts)[N], Value value, const char* fallback) {
  const auto index = static_cast<std::uint32_t>(value);
  return index < N && texts[index] != nullptr ? texts[index] : fallback;
}

}  // namespace

std::string Card::suitToString(bool label) const {
  return std::string(label ? "Color:" : "") + textOf(kSuits, suit_, "no color");
}

std::string Card::rankToString(bool label) const {
  return std::string(label ? " Sign:" : "") + textOf(kRanks, rank_, "no sign");
}

std::string Card::toString() const {
  return suitToString() + " " + rankToString() + " Visible: " + textOf(kVisibilities, visibility_, "unknown ??");
}

}  // namespace poker

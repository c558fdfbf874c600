#include <CommandProcessor/types/DurationText.h>

#include <string_view>

namespace poker {

namespace {

struct Unit {
  std::int32_t seconds;
  std::string_view name;
};
constexpr Unit kUnits[] = {{86400, "day"}, {3600, "hour"}, {60, "minute"}, {1, "second"}};

}  // namespace

std::string durationToString(std::int32_t seconds) {
  if (seconds < 1) return "0 seconds";
  std::string text;
  for (const Unit& unit : kUnits) {
    const std::int32_t count = seconds / unit.seconds;
    seconds %= unit.seconds;
    if (count == 0) continue;
    if (!text.empty()) text += seconds != 0 ? ", " : " and ";
    text += std::to_string(count);
    text += ' ';
    text += unit.name;
    if (count != 1) text += 's';
  }
  return text;
}

}  // namespace poker

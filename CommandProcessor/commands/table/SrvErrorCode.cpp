#include <CommandProcessor/commands/table/SrvErrorCode.h>
#include <CommandProcessor/types/DurationText.h>

#include <iterator>
#include <string_view>

namespace poker {

namespace {

constexpr std::int32_t kUsualDuration = 1800;
constexpr std::string_view kMoney = "{money}";
constexpr std::string_view kDuration = "{duration}";

constexpr const char* kInternalError = "Internal server error";

// By error code; the last row serves every code beyond. Line breaks and grammar are as clients have always shown them.
constexpr const char* kErrorTexts[] = {
    "Seat already taken",
    "You do not have enough money to participate in\ngame on this table! Please, visit the Cashier.",
    "Your account is not setup for real money table!",
    "You are not allowed to sit!",
    "You have reached your participation limit (taking part\nin several tournaments at the same time.)\n"
    "You can not sit!",
    "You have reached your won tournaments limit. You can not sit!",
    "Sorry you have insufficient available balance to play this tournament - please click on Cashier to see your "
    "available balance",
    kInternalError,
    "Sorry, your rebuy is not allowed. The amount\nrequested exceeds the maximum allowed for the table.",
    "Sorry, you can't participate in this tournament.",
    "You must bring to the table at least the amount you had at\nyour last sitting. If you do not wish to bring that "
    "amount \nyou must wait until at least {duration} have past since your last sitting.\n"
    "If you have any questions please contact the HOST.",
    kInternalError,
    kInternalError,
    "No reserved seat was found. Please try again.",
    "You are not allowed to sit on this table!\nFor more information please contact @>SUPPORT<@.",
    "You must bring to the table the exact amount you had at\nyour last sitting ({money}). If you do not wish to bring "
    "that amount \nyou must wait until at least {duration} have past since your last sitting.\n"
    "If you have any questions please contact the HOST.",
    kInternalError,
};

void fillIn(std::string& text, std::string_view placeholder, const std::string& value) {
  if (const auto place = text.find(placeholder); place != std::string::npos) {
    text.replace(place, placeholder.size(), value);
  }
}

}  // namespace

std::string errorCodeToString(SrvErrorCode code, std::int32_t duration, const RealMoneyType& money) {
  const auto row = static_cast<std::uint32_t>(code);
  std::string text = row < std::size(kErrorTexts) ? kErrorTexts[row] : *std::rbegin(kErrorTexts);
  fillIn(text, kMoney, money.toString());
  fillIn(text, kDuration, durationToString(duration < 1 ? kUsualDuration : duration));
  return text;
}

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourRegisterResult.h>

#include <iterator>

namespace poker {

namespace {

// By reason; reasons beyond have no text.
constexpr const char* kRegisterTexts[] = {
    "",
    "You are successfully registered.",
    "You need to enter a password for this private tournament\n"
    " in order to register.",
    "The password you entered for this private\n"
    "tournament is not correct !",
    "You are already registered on this tournament.",
    "Tournament is already started!",
    "Registration error!",
    "You have reached your participation limit (taking part\n"
    "in several tournaments at the same time.)\n"
    "You can not register!",
    "You have reached your won tournaments limit. You can not register!",
    "Sorry, you can't participate in this tournament.",
    "Registration error!\n"
    "For more information please contact @>SUPPORT<@",
};

}  // namespace

void SrvTourRegisterResult::init(Reason reason, std::uint32_t tourID, const TourMoneyChooser& choice) {
  clearConnections();
  reason_ = reason;
  tourID_ = tourID;
  choice_ = choice;
}

std::string SrvTourRegisterResult::reasonStr() const {
  const auto row = static_cast<std::uint8_t>(reason_);
  return row < std::size(kRegisterTexts) ? kRegisterTexts[row] : "";
}

void SrvTourRegisterResult::fields(auto& self, auto&& field) {
  field("reason", self.reason_);
  field("tourID", self.tourID_);
  field("choice", self.choice_);
}

template class Command<SrvTourRegisterResult>;
template class CachedCmdCreator<SrvTourRegisterResult>;

}  // namespace poker

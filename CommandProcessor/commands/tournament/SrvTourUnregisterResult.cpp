#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourUnregisterResult.h>

#include <iterator>

namespace poker {

namespace {

// By reason; reasons beyond have no text.
constexpr const char* kUnregisterTexts[] = {
    "",
    "You are successfully unregistered.",
    "Tournament is already started!",
    "Unable to unregister.",
};

}  // namespace

void SrvTourUnregisterResult::init(Reason reason, std::uint32_t tourID) {
  clearConnections();
  reason_ = reason;
  tourID_ = tourID;
}

std::string SrvTourUnregisterResult::reasonStr() const {
  const auto row = static_cast<std::uint8_t>(reason_);
  return row < std::size(kUnregisterTexts) ? kUnregisterTexts[row] : "";
}

void SrvTourUnregisterResult::fields(auto& self, auto&& field) {
  field("reason", self.reason_);
  field("tourID", self.tourID_);
}

template class Command<SrvTourUnregisterResult>;
template class CachedCmdCreator<SrvTourUnregisterResult>;

}  // namespace poker

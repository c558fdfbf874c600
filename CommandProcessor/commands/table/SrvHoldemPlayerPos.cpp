#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvHoldemPlayerPos.h>

#include <iterator>

namespace poker {

namespace {

// By position.
constexpr const char* kPositionTexts[] = {"None", "Normal", "Small Blind", "Big Blind", "Post", "Straddle"};

constexpr struct {
  UserAction action;
  SrvHoldemPlayerPos::PlayerPos pos;
} kPositions[] = {
    {UserAction::SmallBlind, SrvHoldemPlayerPos::SmallBlind},
    {UserAction::BigBlind, SrvHoldemPlayerPos::BigBlind},
    {UserAction::Post, SrvHoldemPlayerPos::Post},
    {UserAction::Straddle, SrvHoldemPlayerPos::Straddle},
};

}  // namespace

void SrvHoldemPlayerPos::init(UserAction action) {
  clearConnections();
  pos_ = Normal;
  for (const auto& row : kPositions) {
    if (row.action == action) pos_ = row.pos;
  }
}

const char* SrvHoldemPlayerPos::playerPos2String(PlayerPos pos) {
  return pos < std::size(kPositionTexts) ? kPositionTexts[pos] : "";
}

void SrvHoldemPlayerPos::fields(auto& self, auto&& field) { field("pos", self.pos_); }

template class Command<SrvHoldemPlayerPos>;
template class CachedCmdCreator<SrvHoldemPlayerPos>;

}  // namespace poker

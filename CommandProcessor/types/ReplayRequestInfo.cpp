#include <CommandProcessor/types/ReplayRequestInfo.h>
#include <CommandProcessor/wire/RecordImpl.h>

namespace poker {

void ReplayRequestInfo::setGameID(std::uint32_t gameID) {
  mask_ |= kGameID;
  gameID_ = gameID;
}

void ReplayRequestInfo::setFrom(const COleDateTime& time) {
  mask_ |= kFrom;
  from_ = time;
}

void ReplayRequestInfo::setTo(const COleDateTime& time) {
  mask_ |= kTo;
  to_ = time;
}

void ReplayRequestInfo::setMostHands(std::uint32_t count) {
  mask_ |= kMostHands;
  mostHands_ = count;
}

void ReplayRequestInfo::setGameType(GameType type) {
  mask_ |= kGameType;
  gameType_ = type;
}

void ReplayRequestInfo::setOpponent(const std::string& screenName) {
  mask_ |= kOpponent;
  opponent_ = screenName;
}

void ReplayRequestInfo::addReplay(const ReplayInfo& replay) {
  if (!has(kReplays)) replays_.clear();
  mask_ |= kReplays;
  replays_.push_back(replay);
}

template class Record<ReplayRequestInfo>;

}  // namespace poker

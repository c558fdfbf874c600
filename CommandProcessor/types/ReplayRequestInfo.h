#pragma once

#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/types/GameType.h>
#include <CommandProcessor/types/ReplayInfo.h>
#include <CommandProcessor/wire/Record.h>

#include <cstdint>
#include <string>
#include <vector>

namespace poker {

/// Which hands a player asks for: those that meet every criterion that is set.
///
///     mask (32 bits), the criteria that it names (not in the order of their bits), listOnly (bool)
///
/// Bits of the mask that name no criterion are carried and select nothing.
class COMMANDPROCESSOR_API ReplayRequestInfo : public Record<ReplayRequestInfo> {
 public:
  /// The bits of the mask.
  enum Criterion : std::uint32_t {
    kGameType = 0x01,   ///< hands of this game
    kOpponent = 0x02,   ///< hands in which this player took part
    kMostHands = 0x04,  ///< no more than so many, the latest ones
    kFrom = 0x08,       ///< hands that began at this time or later
    kTo = 0x10,         ///< hands that began at this time or earlier
    kReplays = 0x20,    ///< hands that were played at one of these times
    kGameID = 0x100,    ///< hands of one table
  };

  ReplayRequestInfo() = default;

  std::uint32_t mask() const { return mask_; }
  bool has(Criterion criterion) const { return (mask_ & criterion) != 0; }
  /// Takes the criterion back.
  void drop(Criterion criterion) { mask_ &= ~static_cast<std::uint32_t>(criterion); }

  // Each sets its criterion; the values mean something only while has() says so.

  void setGameID(std::uint32_t gameID);
  std::uint32_t gameID() const { return gameID_; }
  void setFrom(const COleDateTime& time);
  const COleDateTime& from() const { return from_; }
  void setTo(const COleDateTime& time);
  const COleDateTime& to() const { return to_; }
  void setMostHands(std::uint32_t count);
  std::uint32_t mostHands() const { return mostHands_; }
  void setGameType(GameType type);
  GameType gameType() const { return gameType_; }
  void setOpponent(const std::string& screenName);
  const std::string& opponent() const { return opponent_; }
  void addReplay(const ReplayInfo& replay);
  const std::vector<ReplayInfo>& replays() const { return replays_; }

  /// Whether only the hands' numbers are asked for (SrvRplHandHistoryList), not their texts (SrvRplHandHistory).
  bool listOnly() const { return listOnly_; }
  void setListOnly(bool listOnly) { listOnly_ = listOnly; }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("mask", self.mask_);
    field.when("mask has 0x100", self.has(kGameID), [&](auto& part) { part("gameID", self.gameID_); });
    field.when("mask has 0x08", self.has(kFrom), [&](auto& part) { part("from", wire::dateTimeStatus(self.from_)); });
    field.when("mask has 0x10", self.has(kTo), [&](auto& part) { part("to", wire::dateTimeStatus(self.to_)); });
    field.when("mask has 0x04", self.has(kMostHands), [&](auto& part) { part("mostHands", self.mostHands_); });
    field.when("mask has 0x01", self.has(kGameType), [&](auto& part) { part("gameType", self.gameType_); });
    field.when("mask has 0x02", self.has(kOpponent), [&](auto& part) { part("opponent", self.opponent_); });
    field.when("mask has 0x20", self.has(kReplays),
               [&](auto& part) { part("replays", wire::list<std::uint32_t>(self.replays_)); });
    field("listOnly", self.listOnly_);
  }

  std::uint32_t mask_ = 0;
  std::uint32_t gameID_ = 0;
  COleDateTime from_;
  COleDateTime to_;
  std::uint32_t mostHands_ = 0;
  GameType gameType_ = GameType::None;
  std::string opponent_;
  std::vector<ReplayInfo> replays_;
  bool listOnly_ = false;
};

}  // namespace poker

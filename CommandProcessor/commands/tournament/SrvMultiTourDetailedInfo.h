#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/MultiStartInfo.h>
#include <CommandProcessor/types/MultiTourMoneyInfo.h>
#include <CommandProcessor/types/MultiTourneyInfo.h>

#include <cstdint>

namespace poker {

/// A multi-table tournament's money, times and numbers in one summary, as one player sees it.
class COMMANDPROCESSOR_API SrvMultiTourDetailedInfo final : public Command<SrvMultiTourDetailedInfo> {
 public:
  /// @param ownTable    id of the player's table; 0 for none
  /// @param registered  whether the player takes part
  void init(const MultiTourMoneyInfo& money, const MultiStartInfo& start, const MultiTourneyInfo& tour,
            std::uint32_t tourID, std::uint32_t ownTable, bool registered);

  // Those that are not const let a receiver complete what it was sent.
  MultiTourMoneyInfo& getMoneyInfo() { return money_; }
  const MultiTourMoneyInfo& getMoneyInfo() const { return money_; }
  MultiStartInfo& getStartInfo() { return start_; }
  const MultiStartInfo& getStartInfo() const { return start_; }
  MultiTourneyInfo& getTourInfo() { return tour_; }
  const MultiTourneyInfo& getTourInfo() const { return tour_; }
  std::uint32_t& tourID() { return tourID_; }
  std::uint32_t tourID() const { return tourID_; }
  std::uint32_t ownTable() const { return ownTable_; }
  bool registered() const { return registered_; }

 private:
  friend FieldAccess;
  SrvMultiTourDetailedInfo() = default;
  static void fields(auto& self, auto&& field);

  MultiTourMoneyInfo money_;
  MultiStartInfo start_;
  MultiTourneyInfo tour_;
  std::uint32_t tourID_ = 0;
  std::uint32_t ownTable_ = 0;
  bool registered_ = false;
};

}  // namespace poker

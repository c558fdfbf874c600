#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>

namespace poker {

/// What a tournament waits for: players to register, seconds to its start, the end of a break, an absent player. The
/// client shows infoText().
class COMMANDPROCESSOR_API SrvTourStartInfo final : public Command<SrvTourStartInfo> {
 public:
  // Counts of players that mean something else.
  /// The table waits for an absent player.
  static constexpr std::int32_t SuspendedSpecialPlayerCountValue = 0x7FFFFFFF;
  /// The tournament is in a time break.
  static constexpr std::int32_t TimeBreakSpecialPlayerCountValue = 0x7FFFFFFE;
  /// The table waits while players are moved.
  static constexpr std::int32_t SusOnMoveSpecialPlayerCountValue = 0x7FFFFFFD;
  /// The host suspended the tournament.
  static constexpr std::int32_t HostBreakSpecialPlayerCountValue = 0x7FFFFFFC;

  /// @param players  how many must still register, or one of the special counts; 0 or below: none
  /// @param seconds  until it goes on; 0 or below: nobody knows
  void init(std::int32_t players, std::int32_t seconds);

  std::int32_t getPlayers() const { return players_; }
  std::int32_t getSeconds() const { return seconds_; }
  void setSeconds(std::int32_t seconds) { seconds_ = seconds; }

  bool isBreak() const { return players_ == TimeBreakSpecialPlayerCountValue; }
  /// By the host, who alone knows for how long.
  bool isSuspended() const { return seconds_ == 0 && players_ == HostBreakSpecialPlayerCountValue; }
  /// The players keep their seats meanwhile.
  bool shouldStay() const { return isBreak() || players_ == SusOnMoveSpecialPlayerCountValue; }
  /// What the players are told; empty when there is nothing to wait for.
  std::string infoText() const;

 private:
  friend FieldAccess;
  SrvTourStartInfo() = default;
  static void fields(auto& self, auto&& field);

  std::int32_t players_ = 0;
  std::int32_t seconds_ = 0;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvTableStateUpdate.h>
#include <CommandProcessor/types/NextTurnOptions.h>

#include <cstdint>

namespace poker {

/// It is a seat's turn. Its player acknowledges with ClTurnReceived and answers with ClUserAction.
class COMMANDPROCESSOR_API SrvUserTurn final : public Command<SrvUserTurn, SrvTableStateUpdate> {
 public:
  /// @param notify        whether the client calls its player's attention to the turn
  /// @param replyTimeout  seconds to answer; only its low byte is kept
  void init(SeatID seat, bool notify, const NextTurnOptions& turns, unsigned replyTimeout);

  const NextTurnOptions& getTurns() const { return turns_; }
  /// The mask of all offered actions.
  std::uint32_t getActionCodes() const { return turns_.getActionCodes(); }
  std::uint8_t turnReplyTimeout() const { return replyTimeout_; }

 private:
  friend FieldAccess;
  SrvUserTurn() = default;
  static void fields(auto& self, auto&& field);

  NextTurnOptions turns_;
  std::uint8_t replyTimeout_ = 0;
};

}  // namespace poker

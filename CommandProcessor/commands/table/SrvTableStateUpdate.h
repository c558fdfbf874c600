#pragma once

#include <CommandProcessor/core/BaseCommand.h>
#include <CommandProcessor/types/TypeWrapper.h>

namespace poker {

/// The base of the commands that change what a client shows at one seat; its fields stand in front of theirs.
class COMMANDPROCESSOR_API SrvTableStateUpdate : public BaseCommand<SrvTableStateUpdate> {
 public:
  /// No seat, no notice.
  explicit SrvTableStateUpdate(CommandType type) : BaseCommand(type) {}
  SrvTableStateUpdate(CommandType type, const SeatID& seat, bool notify)
      : BaseCommand(type), seatID_(seat), notify_(notify) {}

  const SeatID& getSeatID() const { return seatID_; }
  /// Whether the client calls its player's attention to the change.
  bool isNotify() const { return notify_; }

 protected:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("seatID", self.seatID_);
    field("notify", self.notify_);
  }
  /// What an init() does first: empties the connection set and assigns the fields of this base.
  void initUpdate(const SeatID& seat, bool notify) {
    clearConnections();
    seatID_ = seat;
    notify_ = notify;
  }

  SeatID seatID_;
  bool notify_ = false;
};

}  // namespace poker

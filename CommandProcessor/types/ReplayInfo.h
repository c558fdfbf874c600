#pragma once

#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/wire/Record.h>

#include <cstdint>

namespace poker {

/// When a hand was played. Only the two times travel: which hand it is stays with the side that made the record, and is
/// 0 to the one that reads it.
///
///     started (date-time and its status, 12 bytes), ended (the same)
class COMMANDPROCESSOR_API ReplayInfo : public Record<ReplayInfo> {
 public:
  ReplayInfo() = default;
  /// With both times at 1899-12-30 00:00.
  explicit ReplayInfo(std::uint32_t handNumber) : handNumber_(handNumber) {}

  std::uint32_t handNumber() const { return handNumber_; }
  const COleDateTime& started() const { return started_; }
  void setStarted(const COleDateTime& time) { started_ = time; }
  const COleDateTime& ended() const { return ended_; }
  void setEnded(const COleDateTime& time) { ended_ = time; }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field.local(self.handNumber_);
    field("started", wire::dateTimeStatus(self.started_));
    field("ended", wire::dateTimeStatus(self.ended_));
  }

  std::uint32_t handNumber_ = 0;
  COleDateTime started_;
  COleDateTime ended_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/ClMiscUserBased.h>
#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/ReplayRequestInfo.h>

namespace poker {

/// A player asks for hands by a filter. Answered by SrvRplHandHistory or, when the filter asks for numbers alone,
/// SrvRplHandHistoryList.
class COMMANDPROCESSOR_API ClRplGetHandHistory final : public Command<ClRplGetHandHistory, ClMiscUserBased> {
 public:
  void init(const ReplayRequestInfo& requestInfo);

  const ReplayRequestInfo& requestInfo() const { return requestInfo_; }

 private:
  friend FieldAccess;
  ClRplGetHandHistory() = default;
  static void fields(auto& self, auto&& field);

  ReplayRequestInfo requestInfo_;
};

}  // namespace poker

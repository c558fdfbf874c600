#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TournamentsInfo.h>

namespace poker {

/// The tournaments of one kind, in answer to ClGetTournamentsInfo.
class COMMANDPROCESSOR_API SrvTournamentsInfo final : public Command<SrvTournamentsInfo> {
 public:
  void init(const TournamentsInfo& info);

  const TournamentsInfo& getInfo() const { return info_; }

 private:
  friend FieldAccess;
  SrvTournamentsInfo() = default;
  static void fields(auto& self, auto&& field);

  TournamentsInfo info_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/GameStartupInfo.h>
#include <CommandProcessor/types/TourNames.h>

namespace poker {

/// How a tournament's table is set up, in answer to ClGetTourTableInfo.
class COMMANDPROCESSOR_API SrvTourTableInfo final : public Command<SrvTourTableInfo> {
 public:
  void init(const GameStartupInfo& info, TOUR_NAMES::TourType type);

  const GameStartupInfo& getInfo() const { return info_; }
  TOUR_NAMES::TourType getTourType() const { return type_; }

 private:
  friend FieldAccess;
  SrvTourTableInfo() = default;
  static void fields(auto& self, auto&& field);

  GameStartupInfo info_;
  TOUR_NAMES::TourType type_ = TOUR_NAMES::TourType::SingleTable;
};

}  // namespace poker

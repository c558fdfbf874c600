#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TourNames.h>

#include <cstdint>
#include <string>

namespace poker {

/// A tournament stands otherwise than before.
class COMMANDPROCESSOR_API SrvTourTourneyStatus final : public Command<SrvTourTourneyStatus> {
 public:
  void init(TOUR_NAMES::TourStatus status, std::uint32_t tourID);

  TOUR_NAMES::TourStatus status() const { return status_; }
  std::uint32_t tourID() const { return tourID_; }
  /// For logs: "SrvTourTourneyStatus - tournament 7: Tourney_Started".
  std::string toString() const;

 private:
  friend FieldAccess;
  SrvTourTourneyStatus() = default;
  static void fields(auto& self, auto&& field);
  std::string statusStr() const;

  TOUR_NAMES::TourStatus status_ = TOUR_NAMES::TourStatus::None;
  std::uint32_t tourID_ = 0;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>
#include <CommandProcessor/types/TourNames.h>

#include <cstdint>

namespace poker {

/// The lobby asks for the tournaments of one kind. Answered by SrvTournamentsInfo.
class COMMANDPROCESSOR_API ClGetTournamentsInfo final : public Command<ClGetTournamentsInfo, ClientTourCommandBase> {
 public:
  /// @param version  of the list as the client holds it; 0 asks for all of it
  void init(TOUR_NAMES::TourType type, std::uint32_t version);

  TOUR_NAMES::TourType getTourType() const { return type_; }
  std::uint32_t getVersion() const { return version_; }

 private:
  friend FieldAccess;
  ClGetTournamentsInfo() = default;
  static void fields(auto& self, auto&& field);

  TOUR_NAMES::TourType type_ = TOUR_NAMES::TourType::SingleTable;
  std::uint32_t version_ = 0;
};

}  // namespace poker

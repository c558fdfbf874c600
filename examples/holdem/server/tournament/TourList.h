#pragma once

#include <CommandProcessor/types/TournamentsInfo.h>
#include <examples/holdem/server/lobby/VersionNumbers.h>
#include <examples/holdem/server/lobby/VersionedMap.h>

#include <cstdint>

namespace poker::holdem {

/// The tournaments of one kind, as a list that knows what has changed in it since any of its versions. They are few, gone ones
/// included: its counts have 16 bits. One thread at a time.
class TourList {
 public:
  /// @param numbers  where versions come from; must outlive this object
  TourList(TOUR_NAMES::TourType type, VersionNumbers& numbers)
      : type_(type), numbers_(numbers), lines_([&numbers] { return numbers.forChange(); }) {}

  /// Adds the tournament, or replaces its line if something there is different; the line's version is set here.
  void set(const TourListEntry& line);
  /// Takes it off the list, if it is there.
  void remove(std::uint32_t tournamentID) { lines_.remove(tournamentID); }

  /// Tells somebody who has the list in that version what is different now, with the counts of all; the whole list to who
  /// has none (0), or one that is not from here.
  void changesSince(std::uint32_t version, TournamentsInfo& changes) const;

 private:
  TOUR_NAMES::TourType type_;
  VersionNumbers& numbers_;
  VersionedMap<std::uint32_t, TourListEntry> lines_;
};

}  // namespace poker::holdem

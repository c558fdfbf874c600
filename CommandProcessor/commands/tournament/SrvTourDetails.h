#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TournamentDetailedInfo.h>

#include <cstdint>

namespace poker {

/// One tournament with its players, in answer to ClGetTourDetails.
class COMMANDPROCESSOR_API SrvTourDetails final : public Command<SrvTourDetails> {
 public:
  void init(const TournamentDetailedInfo& info, std::uint32_t tourID);

  const TournamentDetailedInfo& getInfo() const { return info_; }
  /// Spelled so, as in the programs that use it.
  std::uint32_t touranmentID() const { return tourID_; }

 private:
  friend FieldAccess;
  SrvTourDetails() = default;
  static void fields(auto& self, auto&& field);

  TournamentDetailedInfo info_;
  std::uint32_t tourID_ = 0;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// The lobby asks for the details of one tournament. Answered by SrvTourDetails.
class COMMANDPROCESSOR_API ClGetTourDetails final : public Command<ClGetTourDetails, ClientTourCommandBase> {
 public:
  /// @param version  of the details as the client holds them; 0 asks for all of them
  void init(std::uint32_t tournamentId, std::uint32_t version);

  std::uint32_t getVersion() const { return version_; }

 private:
  friend FieldAccess;
  ClGetTourDetails() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t version_ = 0;
};

}  // namespace poker

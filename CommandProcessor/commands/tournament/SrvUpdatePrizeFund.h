#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/PrizeFundInfo.h>

#include <cstdint>

namespace poker {

/// The new prize fund of a multi-table tournament, in answer to ClGetUpdateInfo.
class COMMANDPROCESSOR_API SrvUpdatePrizeFund final : public Command<SrvUpdatePrizeFund> {
 public:
  /// @param version  of `fund`; unlike in the other updates it stands in front of the tournament
  void init(std::uint32_t version, const PrizeFundInfo& fund, std::uint32_t tourID);

  const PrizeFundInfo& getFundInfo() const { return fund_; }
  std::uint32_t getVersion() const { return version_; }
  std::uint32_t tourID() const { return tourID_; }

 private:
  friend FieldAccess;
  SrvUpdatePrizeFund() = default;
  static void fields(auto& self, auto&& field);

  PrizeFundInfo fund_;
  std::uint32_t version_ = 0;
  std::uint32_t tourID_ = 0;
};

}  // namespace poker

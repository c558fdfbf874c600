#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/PrizeSchemeInfoMap.h>

#include <cstdint>

namespace poker {

/// The new scheme of prizes of a multi-table tournament, in answer to ClGetUpdateInfo.
class COMMANDPROCESSOR_API SrvUpdatePrizeDescr final : public Command<SrvUpdatePrizeDescr> {
 public:
  void init(const PrizeSchemeInfoMap& prizes, std::uint32_t tourID, std::uint32_t prizeVersion);

  const PrizeSchemeInfoMap& getPrizes() const { return prizes_; }
  std::uint32_t tourID() const { return tourID_; }
  std::uint32_t prizeVersion() const { return prizeVersion_; }

 private:
  friend FieldAccess;
  SrvUpdatePrizeDescr() = default;
  static void fields(auto& self, auto&& field);

  PrizeSchemeInfoMap prizes_;
  std::uint32_t tourID_ = 0;
  std::uint32_t prizeVersion_ = 0;
};

}  // namespace poker

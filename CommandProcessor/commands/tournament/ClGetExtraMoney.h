#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>
#include <CommandProcessor/commands/tournament/ExtraMoneyRequest.h>
#include <CommandProcessor/types/TourMoneyChooser.h>

#include <cstdint>

namespace poker {

/// A player asks for a re-buy or an add-on. Answered by SrvGetExtraMoneyReply.
class COMMANDPROCESSOR_API ClGetExtraMoney final : public Command<ClGetExtraMoney, ClientTourCommandBase> {
 public:
  using RequestType = ExtraMoneyRequest;

  /// @param state         false takes an earlier request back
  /// @param rebuys        how many at once
  /// @param moneyChooser  how the player pays
  void init(RequestType type, bool state, std::uint32_t rebuys, std::uint32_t tournamentId,
            const TourMoneyChooser& moneyChooser);

  std::uint32_t getRebuys() const { return rebuys_; }
  bool state() const { return state_; }
  RequestType getType() const { return type_; }
  const TourMoneyChooser& moneyChooser() const { return moneyChooser_; }

 private:
  friend FieldAccess;
  ClGetExtraMoney() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t rebuys_ = 0;
  bool state_ = false;
  RequestType type_ = RequestType::Rebuy;
  TourMoneyChooser moneyChooser_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>
#include <CommandProcessor/types/TourMoneyChooser.h>

#include <cstdint>
#include <string>

namespace poker {

/// A player registers for a tournament. Answered by SrvTourRegisterResult.
class COMMANDPROCESSOR_API ClTourRegister final : public Command<ClTourRegister, ClientTourCommandBase> {
 public:
  /// @param moneyChoice  how the player pays
  /// @param password     of a private tournament; empty otherwise
  void init(std::uint32_t tournamentId, const TourMoneyChooser& moneyChoice, const std::string& password);

  const std::string& password() const { return password_; }
  const TourMoneyChooser& moneyChoice() const { return moneyChoice_; }

 private:
  friend FieldAccess;
  ClTourRegister() = default;
  static void fields(auto& self, auto&& field);

  std::string password_;
  TourMoneyChooser moneyChoice_;
};

}  // namespace poker

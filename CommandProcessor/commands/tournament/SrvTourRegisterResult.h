#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TourMoneyChooser.h>

#include <cstdint>
#include <string>

namespace poker {

/// Whether a player is registered, in answer to ClTourRegister. With the reason PasswordNeeded the client asks
/// for it and registers again.
class COMMANDPROCESSOR_API SrvTourRegisterResult final : public Command<SrvTourRegisterResult> {
 public:
  /// One byte; other values are carried as they are.
  enum class Reason : std::uint8_t {
    None = 0,
    Registered = 1,
    PasswordNeeded = 2,
    WrongPassword = 3,
    AlreadyRegistered = 4,
    AlreadyStarted = 5,
    Failed = 6,
    ParticipationLimit = 7,  ///< plays in too many tournaments
    WonTournamentsLimit = 8,
    NotAllowed = 9,
    FailedAskSupport = 10,  ///< the player is told whom to ask
  };

  /// @param choice  how the player paid, or may pay
  void init(Reason reason, std::uint32_t tourID, const TourMoneyChooser& choice);

  Reason reason() const { return reason_; }
  std::uint32_t tourID() const { return tourID_; }
  const TourMoneyChooser& choice() const { return choice_; }
  /// What the player is told: one line, or several with "\n" between them; empty for reasons without a text.
  std::string reasonStr() const;

 private:
  friend FieldAccess;
  SrvTourRegisterResult() = default;
  static void fields(auto& self, auto&& field);

  Reason reason_ = Reason::None;
  std::uint32_t tourID_ = 0;
  TourMoneyChooser choice_;
};

}  // namespace poker

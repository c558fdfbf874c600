#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>

namespace poker {

/// A player declines the seat that SrvWaitList held for it.
class COMMANDPROCESSOR_API ClRejectInvite final : public Command<ClRejectInvite> {
 public:
  /// @param reserveID  as SrvWaitList named the reservation
  void init(unsigned gameID, const std::string& reserveID);

  unsigned gameID() const { return gameID_; }
  std::string reserveID() const { return reserveID_; }

 private:
  friend FieldAccess;
  ClRejectInvite() = default;
  static void fields(auto& self, auto&& field);

  std::string reserveID_;
  std::uint32_t gameID_ = 0;
};

}  // namespace poker

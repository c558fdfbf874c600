#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>

namespace poker {

/// A seat is held for a player who waits. The client answers ClAcceptInvite or ClRejectInvite.
class COMMANDPROCESSOR_API SrvWaitList final : public Command<SrvWaitList> {
 public:
  /// @param reserveID  names the reservation; the server chooses its form
  void init(unsigned gameID, const std::string& reserveID);

  unsigned gameID() const { return gameID_; }
  const std::string& reserveID() const { return reserveID_; }

 private:
  friend FieldAccess;
  SrvWaitList() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t gameID_ = 0;
  std::string reserveID_;
};

}  // namespace poker

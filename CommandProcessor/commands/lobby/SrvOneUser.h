#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// A notice for the lobby about one table's occupancy: a single player sits there.
class COMMANDPROCESSOR_API SrvOneUser final : public Command<SrvOneUser> {
 public:
  /// @param gameID  only its low 16 bits travel: 70000 arrives as 4464
  void init(unsigned gameID);

  unsigned gameID() const { return gameID_; }

 private:
  friend FieldAccess;
  SrvOneUser() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t gameID_ = 0;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// The lobby asks for the full description of one table. Answered by SrvGameInfo.
class COMMANDPROCESSOR_API ClGetGameInfo final : public Command<ClGetGameInfo> {
 public:
  /// @param oldGameID  the table that the client showed before
  /// @param version    of the description as the client holds it; 0 asks for all of it
  void init(unsigned gameID, unsigned oldGameID, std::uint32_t version);

  unsigned getGameID() const { return gameID_; }
  unsigned getOldGameID() const { return oldGameID_; }
  std::uint32_t getVersion() const { return version_; }

 private:
  friend FieldAccess;
  ClGetGameInfo() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t gameID_ = 0;
  std::uint32_t oldGameID_ = 0;
  std::uint32_t version_ = 0;
};

}  // namespace poker

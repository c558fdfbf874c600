#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace poker {

/// A user asks for a tournament to be announced to all players. The server decides whether the user may.
class COMMANDPROCESSOR_API ClMiscAnnounceTour final : public Command<ClMiscAnnounceTour> {
 public:
  /// @param announcement  what the players read; sent up to its first NUL
  void init(std::uint32_t tourID, std::string_view announcement);

  std::uint32_t tourID() const { return tourID_; }
  const std::string& announcement() const { return announcement_; }

 private:
  friend FieldAccess;
  ClMiscAnnounceTour() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t tourID_ = 0;
  std::string announcement_;
};

}  // namespace poker

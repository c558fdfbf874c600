#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// The lobby asks for one list of tables. Answered by SrvServerInfo.
class COMMANDPROCESSOR_API ClGetServerInfo final : public Command<ClGetServerInfo> {
 public:
  /// @param requestedType  the kind of tables to list; server and client agree on the kinds
  /// @param oldType        the kind that the client showed before
  /// @param version        of the requested list as the client holds it; 0 asks for all of it
  void init(std::uint16_t requestedType, std::uint16_t oldType, std::uint32_t version);

  std::uint16_t getRequestedType() const { return requestedType_; }
  std::uint16_t getOldType() const { return oldType_; }
  std::uint32_t getVersion() const { return version_; }

 private:
  friend FieldAccess;
  ClGetServerInfo() = default;
  static void fields(auto& self, auto&& field);

  std::uint16_t requestedType_ = 0;
  std::uint16_t oldType_ = 0;
  std::uint32_t version_ = 0;
};

}  // namespace poker

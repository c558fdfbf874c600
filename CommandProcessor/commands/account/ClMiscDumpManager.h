#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// An operator's tool inside the server asks for a dump of the service's state. It shares its pair with
/// ClMiscIncreasePlayMoney and is for use inside the process alone: what comes from the wire is the other one.
class COMMANDPROCESSOR_API ClMiscDumpManager final : public Command<ClMiscDumpManager> {
 private:
  friend FieldAccess;
  ClMiscDumpManager() = default;
  static void fields(auto&, auto&&) {}
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// A user asks for its bonus money. Answered by SrvPromoInfo.
class COMMANDPROCESSOR_API ClMiscGetPromoInfo final : public Command<ClMiscGetPromoInfo> {
 private:
  friend FieldAccess;
  ClMiscGetPromoInfo() = default;
  static void fields(auto&, auto&&) {}
};

}  // namespace poker

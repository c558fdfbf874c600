#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// A user asks to be sent the coming tournaments by e-mail.
class COMMANDPROCESSOR_API ClMiscSendTourInfo final : public Command<ClMiscSendTourInfo> {
 private:
  friend FieldAccess;
  ClMiscSendTourInfo() = default;
  static void fields(auto&, auto&&) {}
};

}  // namespace poker

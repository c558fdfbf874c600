#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// A client asks for the high-hand promotions. Answered by SrvHighHandInfo.
class COMMANDPROCESSOR_API ClGetHighHand final : public Command<ClGetHighHand> {
 public:
  /// @param showFinished  the finished ones too
  void init(bool showFinished);

  bool showFinished() const { return showFinished_; }

 private:
  friend FieldAccess;
  ClGetHighHand() = default;
  static void fields(auto& self, auto&& field);

  bool showFinished_ = false;
};

}  // namespace poker

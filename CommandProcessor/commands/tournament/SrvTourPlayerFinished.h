#pragma once

#include <CommandProcessor/commands/Command.h>

#include <string>

namespace poker {

/// The player is out of the tournament, or has won it.
class COMMANDPROCESSOR_API SrvTourPlayerFinished final : public Command<SrvTourPlayerFinished> {
 public:
  /// @param text  what the player is told
  void init(const std::string& text);

  const std::string& getText() const { return text_; }

 private:
  friend FieldAccess;
  SrvTourPlayerFinished() = default;
  static void fields(auto& self, auto&& field);

  std::string text_;
};

}  // namespace poker

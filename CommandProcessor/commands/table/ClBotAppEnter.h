#pragma once

#include <CommandProcessor/commands/Command.h>

#include <string>

namespace poker {

/// The client is a program that plays by itself and says which one.
class COMMANDPROCESSOR_API ClBotAppEnter final : public Command<ClBotAppEnter> {
 public:
  void init(const char* str);

  const std::string& str() const { return str_; }

 private:
  friend FieldAccess;
  ClBotAppEnter() = default;
  static void fields(auto& self, auto&& field);

  std::string str_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/lobby/SrvNewsType.h>
#include <CommandProcessor/wire/FlatMap.h>

#include <cstdint>
#include <string>

namespace poker {

/// News for the lobby: texts by message number. A client replaces the texts that it has under the same numbers.
class COMMANDPROCESSOR_API SrvNews final : public Command<SrvNews> {
 public:
  /// No messages.
  void init();
  /// Sets the text of a message, replacing one of the same number. Null is an empty text.
  /// @param text  not one that news() of the same object returned
  void addMsg(int number, const char* text);
  void addMsg(SrvNewsType type, const char* text) { addMsg(static_cast<int>(type), text); }

  /// Null when there is no message of this number. Lives until the messages change.
  const char* news(int number) const;
  const char* news(SrvNewsType type) const { return news(static_cast<int>(type)); }

 private:
  friend FieldAccess;
  SrvNews() = default;
  static void fields(auto& self, auto&& field);

  FlatMap<std::int32_t, std::string> news_;
};

}  // namespace poker

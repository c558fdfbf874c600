#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/ChatMsgTypes.h>

#include <string>

namespace poker {

/// A player says something to the table. It comes back to everybody there as SrvChatMsg.
class COMMANDPROCESSOR_API ClChatMsg final : public Command<ClChatMsg> {
 public:
  /// @param message  null is empty
  void init(const char* message, ChatMsgTypes::ChatStyle style);

  const std::string& getMessage() const { return message_; }
  ChatMsgTypes::ChatStyle style() const { return style_; }

 private:
  friend FieldAccess;
  ClChatMsg() = default;
  static void fields(auto& self, auto&& field);

  std::string message_;
  ChatMsgTypes::ChatStyle style_ = ChatMsgTypes::Normal;
};

}  // namespace poker

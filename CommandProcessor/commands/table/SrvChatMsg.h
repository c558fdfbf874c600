#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/ChatMsgTypes.h>

#include <string>

namespace poker {

/// A chat line for the table.
class COMMANDPROCESSOR_API SrvChatMsg final : public Command<SrvChatMsg> {
 public:
  /// Null texts are empty.
  /// @param sender  who says it; empty when the server itself does
  void init(const char* message, const char* sender, ChatMsgTypes::ChatType type, ChatMsgTypes::ChatStyle style);

  const std::string& getMessage() const { return message_; }
  const std::string& getSender() const { return sender_; }
  ChatMsgTypes::ChatType type() const { return type_; }
  ChatMsgTypes::ChatStyle style() const { return style_; }

 private:
  friend FieldAccess;
  SrvChatMsg() = default;
  static void fields(auto& self, auto&& field);

  std::string message_;
  std::string sender_;
  ChatMsgTypes::ChatType type_ = ChatMsgTypes::PlayerChat;
  ChatMsgTypes::ChatStyle style_ = ChatMsgTypes::Normal;
};

}  // namespace poker

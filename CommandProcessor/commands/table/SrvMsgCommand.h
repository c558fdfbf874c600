#pragma once

#include <CommandProcessor/core/BaseCommand.h>

#include <cstdint>
#include <string>

namespace poker {

/// A command that is one message. It is used as it is, with a type code of its creator's choice.
class COMMANDPROCESSOR_API SrvMsgCommand : public BaseCommand<SrvMsgCommand> {
 public:
  /// The messages that every table needs.
  enum StandardMsg : std::uint32_t {
    NoMsg = 0,
    WaitingForPlayers = 1,
    TableCloses = 2,
    ServerRestarts = 3,
  };

  /// An empty message.
  explicit SrvMsgCommand(CommandType type) : BaseCommand(type) {}
  /// @param msg  a StandardMsg; any other number makes an empty message
  SrvMsgCommand(CommandType type, unsigned msg);

  /// Empties the connection set. Null is empty.
  void init(const char* msg);

  const std::string& getMsg() const { return msg_; }

 protected:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("msg", self.msg_); }

  std::string msg_;
};

}  // namespace poker

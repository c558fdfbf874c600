#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>

namespace poker {

/// A notice from the administration, and what the client does when it has shown it.
class COMMANDPROCESSOR_API SrvAdminMsg final : public Command<SrvAdminMsg> {
 public:
  /// Null texts are empty.
  /// @param postAction  a value on which server and client agree; this library only carries it
  void init(const char* title, const char* message, unsigned char postAction);

  const std::string& title() const { return title_; }
  const std::string& message() const { return message_; }
  std::uint8_t postAction() const { return postAction_; }

 private:
  friend FieldAccess;
  SrvAdminMsg() = default;
  static void fields(auto& self, auto&& field);

  std::uint8_t postAction_ = 0;
  std::string title_;
  std::string message_;
};

}  // namespace poker

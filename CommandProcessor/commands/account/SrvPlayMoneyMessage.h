#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <string>
#include <string_view>

namespace poker {

/// The server's word about the user's play money, in answer to ClMiscIncreasePlayMoney or after a logon that asked for
/// it. Marks the buffer that it is written into as one that holds private data.
class COMMANDPROCESSOR_API SrvPlayMoneyMessage final : public Command<SrvPlayMoneyMessage> {
 public:
  /// @param message    what the user is told; sent up to its first NUL
  /// @param increase   how much was just added, 0 when nothing was
  /// @param playMoney  what the user has now
  void init(std::string_view message, const RealMoneyType& increase, const RealMoneyType& playMoney);

  const std::string& message() const { return message_; }
  const RealMoneyType& increase() const { return increase_; }
  const RealMoneyType& playMoney() const { return playMoney_; }

 private:
  friend FieldAccess;
  SrvPlayMoneyMessage() = default;
  static void fields(auto& self, auto&& field);
  void aboutToSerialize(SerializeCommandBuf& buf) const;

  std::string message_;
  RealMoneyType increase_;
  RealMoneyType playMoney_;
};

}  // namespace poker

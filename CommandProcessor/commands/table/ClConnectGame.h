#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>
#include <vector>

namespace poker {

/// The client joins a table and looks on. Answered by SrvConnectGameOK; what the table looks like follows in
/// SrvTableState.
class COMMANDPROCESSOR_API ClConnectGame final : public Command<ClConnectGame> {
 public:
  /// Copies everything. Null texts are empty.
  /// @param password  of a private table, otherwise empty
  /// @param frID      fingerprint of the client's machine: `size` bytes, none of them this object's own; null, or a
  ///                  size below 1, makes an empty one
  void init(unsigned gameID, const char* password, const char* clientIP, const char* frID, int size);

  unsigned getGameID() const { return gameID_; }
  const std::string& getPass() const { return password_; }
  const std::string& getClientIP() const { return clientIP_; }
  /// frIDStrSize() bytes, not a C string, that live until the next init() or deserialize(); may be null when there are
  /// none.
  const char* frIDStr() const { return reinterpret_cast<const char*>(frID_.data()); }
  int frIDStrSize() const { return static_cast<int>(frID_.size()); }

 private:
  friend FieldAccess;
  ClConnectGame() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t gameID_ = 0;
  std::string password_;
  std::string clientIP_;
  std::vector<std::uint8_t> frID_;
};

}  // namespace poker

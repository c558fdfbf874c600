#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/platform/COleDateTime.h>

namespace poker {

/// The client is connected to the table, in answer to ClConnectGame.
class COMMANDPROCESSOR_API SrvConnectGameOK final : public Command<SrvConnectGameOK> {
 public:
  /// @param serverTime  the server's clock
  void init(const COleDateTime& serverTime);

  const COleDateTime& serverTime() const { return serverTime_; }

 private:
  friend FieldAccess;
  SrvConnectGameOK() = default;
  static void fields(auto& self, auto&& field);

  COleDateTime serverTime_;
};

}  // namespace poker

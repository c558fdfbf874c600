#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/ServerUpdateInfo.h>

namespace poker {

/// What changed in one list of tables, in answer to ClGetServerInfo.
class COMMANDPROCESSOR_API SrvServerInfo final : public Command<SrvServerInfo> {
 public:
  void init(const ServerUpdateInfo& info);

  const ServerUpdateInfo& getInfo() const { return info_; }

 private:
  friend FieldAccess;
  SrvServerInfo() = default;
  static void fields(auto& self, auto&& field);

  ServerUpdateInfo info_;
};

}  // namespace poker

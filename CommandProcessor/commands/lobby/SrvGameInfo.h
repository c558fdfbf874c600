#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TableInfoDetailed.h>

namespace poker {

/// The full description of one table, in answer to ClGetGameInfo.
class COMMANDPROCESSOR_API SrvGameInfo final : public Command<SrvGameInfo> {
 public:
  void init(const TableInfoDetailed& info);

  const TableInfoDetailed& getDetailedInfo() const { return info_; }

 private:
  friend FieldAccess;
  SrvGameInfo() = default;
  static void fields(auto& self, auto&& field);

  TableInfoDetailed info_;
};

}  // namespace poker

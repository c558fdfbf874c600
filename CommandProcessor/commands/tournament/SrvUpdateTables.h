#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/MultiTourTablesInfo.h>

#include <cstdint>

namespace poker {

/// The tables of a multi-table tournament that changed, in answer to ClGetUpdateInfo.
class COMMANDPROCESSOR_API SrvUpdateTables final : public Command<SrvUpdateTables> {
 public:
  void init(const MultiTourTablesInfo& tables, std::uint32_t tourID);

  const MultiTourTablesInfo& getTablesInfo() const { return tables_; }
  std::uint32_t tourID() const { return tourID_; }

 private:
  friend FieldAccess;
  SrvUpdateTables() = default;
  static void fields(auto& self, auto&& field);

  MultiTourTablesInfo tables_;
  std::uint32_t tourID_ = 0;
};

}  // namespace poker

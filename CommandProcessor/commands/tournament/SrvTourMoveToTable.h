#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// The player plays on at another table of its tournament; the client opens it. Also answers ClMoveMe2MyTable.
class COMMANDPROCESSOR_API SrvTourMoveToTable final : public Command<SrvTourMoveToTable> {
 public:
  void init(std::uint32_t tableID);

  std::uint32_t tableID() const { return tableID_; }

 private:
  friend FieldAccess;
  SrvTourMoveToTable() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t tableID_ = 0;
};

}  // namespace poker

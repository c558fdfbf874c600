#pragma once

#include <CommandProcessor/types/DbRecord.h>

#include <string>

namespace poker {

/// When a multi-table tournament takes place, as the lobby shows it.
///
///     registration starts, registration ends, starts (strings)
struct COMMANDPROCESSOR_API MultiStartInfo : DbRecord<MultiStartInfo> {
  std::string registrationStarts;
  std::string registrationEnds;
  std::string starts;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("registrationStarts", self.registrationStarts);
    field("registrationEnds", self.registrationEnds);
    field("starts", self.starts);
  }
};

}  // namespace poker

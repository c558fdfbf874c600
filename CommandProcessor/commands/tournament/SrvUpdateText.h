#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/MultiTourTextInfo.h>

#include <cstdint>

namespace poker {

/// The texts of a multi-table tournament that changed, in answer to ClGetUpdateInfo.
class COMMANDPROCESSOR_API SrvUpdateText final : public Command<SrvUpdateText> {
 public:
  void init(const MultiTourTextInfo& text, std::uint32_t tourID);

  const MultiTourTextInfo& getTextInfo() const { return text_; }
  std::uint32_t tourID() const { return tourID_; }

 private:
  friend FieldAccess;
  SrvUpdateText() = default;
  static void fields(auto& self, auto&& field);

  MultiTourTextInfo text_;
  std::uint32_t tourID_ = 0;
};

}  // namespace poker

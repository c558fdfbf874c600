#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>

namespace poker {

/// A hint that the client shows changes its text.
class COMMANDPROCESSOR_API SrvUpdateHintText final : public Command<SrvUpdateHintText> {
 public:
  /// @param id  which hint; only its low byte travels
  void init(unsigned id, const char* hint);

  unsigned id() const { return id_; }
  const std::string& hint() const { return hint_; }

 private:
  friend FieldAccess;
  SrvUpdateHintText() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t id_ = 0;
  std::string hint_;
};

}  // namespace poker

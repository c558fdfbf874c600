#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/wire/FlatMap.h>

#include <cstdint>

namespace poker {

/// The server's counters for the lobby: players, tables and the like. Server and client agree on the keys.
class COMMANDPROCESSOR_API SrvServerCountersInfo final : public Command<SrvServerCountersInfo> {
 public:
  using Counters = FlatMap<std::uint8_t, std::uint32_t>;

  /// No counters; they are set in counters().
  void init();

  Counters& counters() { return counters_; }
  const Counters& counters() const { return counters_; }

 private:
  friend FieldAccess;
  SrvServerCountersInfo() = default;
  static void fields(auto& self, auto&& field);

  Counters counters_;
};

}  // namespace poker

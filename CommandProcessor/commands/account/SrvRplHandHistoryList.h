#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <vector>

namespace poker {

/// The numbers of the hands that match, in answer to ClRplGetHandHistory.
class COMMANDPROCESSOR_API SrvRplHandHistoryList final : public Command<SrvRplHandHistoryList> {
 public:
  void init(const std::vector<std::uint32_t>& games);
  void add(std::uint32_t game);

  const std::vector<std::uint32_t>& getGames() const { return games_; }
  std::vector<std::uint32_t>& getGames() { return games_; }

 private:
  friend FieldAccess;
  SrvRplHandHistoryList() = default;
  static void fields(auto& self, auto&& field);

  std::vector<std::uint32_t> games_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/wire/StringVector.h>

#include <string>

namespace poker {

/// Hands that were played, as texts, in answer to ClRplGetHandHistory or ClGetHandHistory.
class COMMANDPROCESSOR_API SrvRplHandHistory final : public Command<SrvRplHandHistory> {
 public:
  void init(const StringVector& games);
  void add(const std::string& game);

  const StringVector& getGames() const { return games_; }
  StringVector& getGames() { return games_; }

 private:
  friend FieldAccess;
  SrvRplHandHistory() = default;
  static void fields(auto& self, auto&& field);

  StringVector games_;
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// A player asks for one hand, or for the hands of one game or tournament, by number. Answered by SrvRplHandHistory.
class COMMANDPROCESSOR_API ClGetHandHistory final : public Command<ClGetHandHistory> {
 public:
  /// @param isGameData     the number is that of a game, not of a single hand
  /// @param isTourRequest  the number is that of a tournament
  void init(bool isGameData, std::uint32_t data, bool isTourRequest);

  bool isGameData() const { return isGameData_; }
  /// The number.
  std::uint32_t getData() const { return data_; }
  bool isTourRequiest() const { return isTourRequest_; }

 private:
  friend FieldAccess;
  ClGetHandHistory() = default;
  static void fields(auto& self, auto&& field);

  bool isGameData_ = false;
  std::uint32_t data_ = 0;
  bool isTourRequest_ = false;
};

}  // namespace poker

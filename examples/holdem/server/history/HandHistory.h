#pragma once

#include <CommandProcessor/types/ReplayRequestInfo.h>
#include <CommandProcessor/wire/StringVector.h>
#include <LogUtil/Log.h>
#include <examples/holdem/server/bank/Bank.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace poker::holdem {

/// What players are told of the hands that they played, out of the bank's records, each as that player may see it. Hands
/// come oldest first; where there are more than an answer holds, they are the newest. A record that cannot be read is left
/// out, and logged. Everything throws BankError. One thread.
class HandHistory {
 public:
  static constexpr std::size_t kMostTexts = 100;
  /// Of all texts of an answer: of what a session may have queued (SessionLimits::outputHard), it leaves room for a second
  /// answer and for the table.
  static constexpr std::size_t kMostBytes = 96 * 1024;
  static constexpr std::size_t kMostNumbers = 10'000;

  /// Both must outlive this object.
  HandHistory(Bank& bank, Log& log) : bank_(bank), log_(log) {}

  /// The texts of the hands that meet every criterion.
  StringVector texts(const Account& player, const ReplayRequestInfo& request);
  /// Their numbers.
  std::vector<std::uint32_t> numbers(const Account& player, const ReplayRequestInfo& request);
  /// The text of one hand; none when there is no such hand or the player was not in it.
  StringVector textOf(const Account& player, std::uint64_t number);
  /// The texts of the latest hands at one table.
  StringVector latestAt(const Account& player, std::uint32_t game);
  /// The texts of the latest hands of one tournament, at all of its tables.
  StringVector latestOf(const Account& player, std::uint32_t tournament);

 private:
  /// @param newestFirst  of the player
  StringVector write(const Account& player, const std::vector<std::uint64_t>& newestFirst);
  std::vector<std::uint64_t> find(const Account& player, const ReplayRequestInfo& request, std::size_t most);

  Bank& bank_;
  Log& log_;
};

}  // namespace poker::holdem

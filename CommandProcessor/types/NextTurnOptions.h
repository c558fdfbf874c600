#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/UserAction.h>
#include <CommandProcessor/wire/FlatMap.h>
#include <CommandProcessor/wire/Record.h>

#include <cstddef>
#include <utility>

namespace poker {

namespace wire {

template <class M, class F>
struct TurnRangesCodec;
/// The options' amounts, whose maxima travel only when `haveMinMax` holds (TypeCodecs.h).
template <class M, class F>
TurnRangesCodec<M, F> turnRanges(M& options, F& haveMinMax);

}  // namespace wire

/// The actions open to the player whose turn it is, each with what it costs.
///
///     haveMinMax (bool), count (byte), then for each action in ascending code order:
///     action (32 bits), minimum (money), and when haveMinMax is true maximum (money)
///
/// More than 255 options cannot travel (fitsOnWire() tells).
class COMMANDPROCESSOR_API NextTurnOptions : public Record<NextTurnOptions> {
 public:
  /// By action, its minimum and maximum.
  using Options = FlatMap<UserAction, std::pair<RealMoneyType, RealMoneyType>>;

  /// Offers the action for one fixed amount, in place of what was offered for it.
  void addOption(UserAction action, const RealMoneyType& amount);
  /// Offers the action for any amount from minimum to maximum, and notes that there are ranges.
  void addOption(UserAction action, const RealMoneyType& minimum, const RealMoneyType& maximum);
  void addCheckOption() { addOption(UserAction::Check, RealMoneyType()); }
  void addFoldOption() { addOption(UserAction::Fold, RealMoneyType()); }
  void addSitOutOption() { addOption(UserAction::SittingOut, RealMoneyType()); }

  /// Yields zero for both when the action is not offered.
  void getOptionChips(UserAction action, RealMoneyType& minimum, RealMoneyType& maximum) const;
  /// The mask of all offered actions.
  std::uint32_t getActionCodes() const;
  const Options& options() const { return options_; }
  /// Whether the options carry ranges; otherwise every option has one fixed amount.
  bool haveMinMax() const { return haveMinMax_; }
  std::size_t count() const { return options_.size(); }
  bool empty() const { return options_.empty(); }
  void clear();

  /// Adds what is read to what is there, replacing options for the same actions: clear() first to have it alone. (As a
  /// field of a command the options are replaced.)
  /// @throws CommandDeserializeException*  when the bytes run out; nothing is added then
  void deserialize(DeserializeCommandBuf& buf);

  friend bool operator==(const NextTurnOptions& a, const NextTurnOptions& b) {
    return a.haveMinMax_ == b.haveMinMax_ && a.options_ == b.options_;
  }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("haveMinMax", self.haveMinMax_);
    field("options", wire::turnRanges(self.options_, self.haveMinMax_));
  }

  Options options_;
  bool haveMinMax_ = false;
};

}  // namespace poker

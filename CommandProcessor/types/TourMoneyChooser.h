#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/wire/Record.h>

namespace poker {

/// How a player pays for a seat, a tournament registration or extra chips: one of two amounts, in cash or in tournament
/// money. Until it is chosen both stand side by side.
class COMMANDPROCESSOR_API TourMoneyChooser : public Record<TourMoneyChooser> {
 public:
  /// Nothing to pay: both amounts zero, chosen.
  TourMoneyChooser() = default;
  TourMoneyChooser(const RealMoneyType& cash, const RealMoneyType& tourMoney, bool chosen)
      : cash_(cash), tourMoney_(tourMoney), chosen_(chosen) {}

  /// The first amount.
  const RealMoneyType& cash() const { return cash_; }
  /// The second amount.
  const RealMoneyType& tourMoney() const { return tourMoney_; }
  bool chosen() const { return chosen_; }
  /// Both amounts are zero; on the wire nothing else is told then.
  bool isEmpty() const { return cash_ == RealMoneyType() && tourMoney_ == RealMoneyType(); }

  /// Decides for one of the amounts and sets the other one to zero; does nothing when it is decided.
  /// @param payCash  keep the first amount rather than the second
  void choose(bool payCash);

  /// The shared empty chooser.
  static const TourMoneyChooser& empty();

  friend bool operator==(const TourMoneyChooser& a, const TourMoneyChooser& b) {
    return a.cash_ == b.cash_ && a.tourMoney_ == b.tourMoney_ && a.chosen_ == b.chosen_;
  }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field.unless("empty", self.isEmpty(), [&](auto& amounts) {
      amounts("first", self.cash_);
      amounts("second", self.tourMoney_);
      amounts("chosen", wire::orElse(self.chosen_, true));
    });
  }

  RealMoneyType cash_;
  RealMoneyType tourMoney_;
  bool chosen_ = true;
};

}  // namespace poker

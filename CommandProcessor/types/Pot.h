#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/wire/Record.h>

#include <vector>

namespace poker {

/// The pots on the table: the main pot, and the side pots in the order in which they were opened.
///
///     main pot (money), count (16 bits), then each side pot as money
///
/// More than 65,535 side pots cannot travel (fitsOnWire() tells).
class COMMANDPROCESSOR_API Pot : public Record<Pot> {
 public:
  Pot() = default;
  explicit Pot(const RealMoneyType& mainPot) : mainPot_(mainPot) {}

  const RealMoneyType& mainPot() const { return mainPot_; }
  void setMainPot(const RealMoneyType& amount) { mainPot_ = amount; }
  const std::vector<RealMoneyType>& sidePots() const { return sidePots_; }
  void addSidePot(const RealMoneyType& amount) { sidePots_.push_back(amount); }
  /// No money and no side pots.
  void clear();
  /// All pots together.
  RealMoneyType total() const;

  friend bool operator==(const Pot& a, const Pot& b) { return a.mainPot_ == b.mainPot_ && a.sidePots_ == b.sidePots_; }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("mainPot", self.mainPot_);
    field("sidePots", wire::list<std::uint16_t>(self.sidePots_));
  }

  RealMoneyType mainPot_;
  std::vector<RealMoneyType> sidePots_;
};

}  // namespace poker

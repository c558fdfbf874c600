#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TourMoneyType.h>

#include <cstdint>

namespace poker {

/// What a tournament costs, in answer to ClGetTourMoney.
class COMMANDPROCESSOR_API SrvTourMoney final : public Command<SrvTourMoney> {
 public:
  /// @param total  what the player pays; not computed here
  void init(const TourMoneyType& buyIn, const TourMoneyType& fee, const TourMoneyType& total, std::uint32_t tourID);

  const TourMoneyType& getBuyIn() const { return buyIn_; }
  const TourMoneyType& getFee() const { return fee_; }
  const TourMoneyType& getTotal() const { return total_; }
  std::uint32_t tourId() const { return tourID_; }

 private:
  friend FieldAccess;
  SrvTourMoney() = default;
  static void fields(auto& self, auto&& field);

  TourMoneyType buyIn_;
  TourMoneyType fee_;
  TourMoneyType total_;
  std::uint32_t tourID_ = 0;
};

}  // namespace poker

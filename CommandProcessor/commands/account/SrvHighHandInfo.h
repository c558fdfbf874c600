#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/PromoHighHandInfo.h>
#include <CommandProcessor/types/SteadyVector.h>

#include <vector>

namespace poker {

/// The high-hand promotions, in answer to ClGetHighHand.
class COMMANDPROCESSOR_API SrvHighHandInfo final : public Command<SrvHighHandInfo> {
 public:
  /// Copies the promotions; at most 65,535 can travel.
  void init(const std::vector<PromoHighHandInfo>& promotions);

  const SteadyVector<PromoHighHandInfo>& getPromotions() const { return promotions_; }

 private:
  friend FieldAccess;
  SrvHighHandInfo() = default;
  static void fields(auto& self, auto&& field);

  SteadyVector<PromoHighHandInfo> promotions_;
};

}  // namespace poker

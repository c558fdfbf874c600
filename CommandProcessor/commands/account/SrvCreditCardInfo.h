#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/CreditCardInfo.h>

#include <vector>

namespace poker {

/// The user's credit cards, in answer to ClMiscGetCreditCardInfo.
class COMMANDPROCESSOR_API SrvCreditCardInfo final : public Command<SrvCreditCardInfo> {
 public:
  /// Without cards.
  void init();
  void add(const CreditCardInfo& card);

  const std::vector<CreditCardInfo>& cards() const { return cards_; }

 private:
  friend FieldAccess;
  SrvCreditCardInfo() = default;
  static void fields(auto& self, auto&& field);

  std::vector<CreditCardInfo> cards_;  // no SteadyVector: its spare elements would keep their secrets
};

}  // namespace poker

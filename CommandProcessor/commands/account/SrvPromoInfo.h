#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/PromoBucksInfo.h>

namespace poker {

/// The user's bonus money, in answer to ClMiscGetPromoInfo.
class COMMANDPROCESSOR_API SrvPromoInfo final : public Command<SrvPromoInfo> {
 public:
  void init(const PromoBucksInfo& promoInfo);

  const PromoBucksInfo& promoInfo() const { return promoInfo_; }

 private:
  friend FieldAccess;
  SrvPromoInfo() = default;
  static void fields(auto& self, auto&& field);

  PromoBucksInfo promoInfo_;
};

}  // namespace poker

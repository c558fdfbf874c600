#pragma once

#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/wire/Record.h>

#include <cstdint>
#include <string>

namespace poker {

/// A credit card as the cashier knows it. Its number is a secret, though a cashier tells no more than its last digits.
///
///     cardID (32 bits), brand, number, holder (strings), expires (date-time), usable (bool)
struct COMMANDPROCESSOR_API CreditCardInfo : Record<CreditCardInfo> {
  std::uint32_t cardID = 0;  ///< what the cashier calls it by
  std::string brand;
  std::string number;
  std::string holder;
  COleDateTime expires;  ///< the first day on which it is no longer good
  bool usable = false;   ///< deposits from it are accepted

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("cardID", self.cardID);
    field("brand", self.brand);
    field("number", wire::secret(self.number));
    field("holder", self.holder);
    field("expires", self.expires);
    field("usable", self.usable);
  }
};

}  // namespace poker

#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/UserAddress.h>

namespace poker {

/// A user changes its postal address.
class COMMANDPROCESSOR_API ClUpdateUserAddress final : public Command<ClUpdateUserAddress> {
 public:
  void init(const UserAddress& address);

  const UserAddress& address() const { return address_; }

 private:
  friend FieldAccess;
  ClUpdateUserAddress() = default;
  static void fields(auto& self, auto&& field);

  UserAddress address_;
};

}  // namespace poker

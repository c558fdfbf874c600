#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClUpdateUserAddress.h>

namespace poker {

void ClUpdateUserAddress::init(const UserAddress& address) {
  clearConnections();
  address_ = address;
}

void ClUpdateUserAddress::fields(auto& self, auto&& field) { field("address", self.address_); }

template class Command<ClUpdateUserAddress>;
template class CachedCmdCreator<ClUpdateUserAddress>;

}  // namespace poker

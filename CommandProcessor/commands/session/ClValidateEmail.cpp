#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClValidateEmail.h>

namespace poker {

void ClValidateEmail::init(const char* userName, const char* emailCode) {
  clearConnections();
  userName_ = userName != nullptr ? userName : "";
  emailCode_ = emailCode != nullptr ? emailCode : "";
}

void ClValidateEmail::fields(auto& self, auto&& field) {
  field("userName", self.userName_);
  field("emailCode", secret(self.emailCode_));
}

template class Command<ClValidateEmail>;
template class CachedCmdCreator<ClValidateEmail>;

}  // namespace poker

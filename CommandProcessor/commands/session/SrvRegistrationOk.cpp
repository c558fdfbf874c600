#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvRegistrationOk.h>

namespace poker {

void SrvRegistrationOk::init(CommonTypes::NewAccountReg result, const char* userName) {
  clearConnections();
  result_ = result;
  userName_ = userName != nullptr ? userName : "";
}

void SrvRegistrationOk::fields(auto& self, auto&& field) {
  // The name first, unlike in init().
  field("userName", self.userName_);
  field("result", self.result_);
}

template class Command<SrvRegistrationOk>;
template class CachedCmdCreator<SrvRegistrationOk>;

}  // namespace poker

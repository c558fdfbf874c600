#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscChnagePassword.h>

namespace poker {

void ClMiscChnagePassword::init(const char* oldPassword, const char* newPassword) {
  StringCommand::init(newPassword);
  oldPassword_ = oldPassword != nullptr ? oldPassword : "";
}

void ClMiscChnagePassword::fields(auto& self, auto&& field) {
  ClMiscUserBased::fields(self, field);
  // The other way round than in init().
  field("newPassword", secret(self.text_));
  field("oldPassword", secret(self.oldPassword_));
}

template class Command<ClMiscChnagePassword, StringCommand<ClMiscUserBased, MiscCommandType>>;
template class CachedCmdCreator<ClMiscChnagePassword>;

}  // namespace poker

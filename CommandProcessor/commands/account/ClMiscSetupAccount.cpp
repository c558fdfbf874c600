#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscSetupAccount.h>

namespace poker {

void ClMiscSetupAccount::init(std::string_view firstName, std::string_view lastName, const COleDateTime& birthDate,
                              const UserAddress& address, std::string_view securityQuestion,
                              std::string_view securityAnswer) {
  ClMiscUserBased::init();
  firstName_ = firstName;
  lastName_ = lastName;
  birthDate_ = birthDate;
  address_ = address;
  securityQuestion_ = securityQuestion;
  securityAnswer_ = securityAnswer;
}

void ClMiscSetupAccount::fields(auto& self, auto&& field) {
  ClMiscUserBased::fields(self, field);
  field("firstName", self.firstName_);
  field("lastName", self.lastName_);
  field("birthDate", self.birthDate_);
  field("address", self.address_);
  field("securityQuestion", self.securityQuestion_);
  field("securityAnswer", secret(self.securityAnswer_));
}

template class Command<ClMiscSetupAccount, ClMiscUserBased>;
template class CachedCmdCreator<ClMiscSetupAccount>;

}  // namespace poker

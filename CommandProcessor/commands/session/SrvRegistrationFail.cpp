#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvRegistrationFail.h>
#include <CommandProcessor/types/CommonTypes.h>

#include <algorithm>
#include <iterator>

namespace poker {

namespace {

constexpr struct {
  unsigned char result;
  const char* text;
} kErrors[] = {
    {CommonTypes::HardwareConflict,
     "An account from this computer could not be created \ndue to conflicting hardware values."},
    {CommonTypes::UserNameTaken,
     "An account with the chosen user name already exists!\nChoose another user name please."},
    {CommonTypes::UnknownReferral, "The specified referral does not exists!\n"},
    {CommonTypes::CountryNotAllowed,
     "The country you have chosen is not allowed.\n"
     "Please apply for an account from an alternative address.\n"
     "Please contact support for more details."},
};
constexpr const char* kOtherError = "Account could not be created at this time.\nPlease try again later.";

}  // namespace

const char* SrvRegistrationFail::errorMsg() const {
  const auto* const row =
      std::find_if(std::begin(kErrors), std::end(kErrors), [&](const auto& text) { return text.result == result(); });
  return row != std::end(kErrors) ? row->text : kOtherError;
}

void SrvRegistrationFail::fields(auto& self, auto&& field) { field("result", self.number_); }

template class Command<SrvRegistrationFail,
                       NumberCommandEx<PokerCommandTmpl<SrvCmdProcessorType>, unsigned char, unsigned char>>;
template class CachedCmdCreator<SrvRegistrationFail>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvLogonError.h>

#include <iterator>

namespace poker {

namespace {

// By code; codes beyond have no text.
constexpr const char* kMessages[] = {
    "",
    "Bad user code or password !",
    "Your account was banned. Please contact management staff.",
    "Your account was locked. Please contact management staff.",

    "There is already another account open from this computer. Only one account per user is allowed.\n"
    "Please contact management staff.",

    "The account you are trying to use is already logged in.\n"
    "If this is not authorized, or for more information, please contact the HOST.\n"
    "You may also call customer support at @>PHONE<@.",

    "Please choose a screename that will be used\n"
    "to identify you when you play, sit, or chat\n"
    "at our tables and tournaments.",

    "",

    // The PIN stands directly behind it.
    "Your Log-In PIN has been changed so you can use all of our products with the same\n"
    "PIN and Password. To find out more about our games and wagering services, please\n"
    "visit our website. Your screenname for Poker will remain unchanged at the tables,\n"
    "but you must use your new PIN to log-in from now on.\n"
    "Your new PIN number is: ",
};

}  // namespace

void SrvLogonError::init(CommonTypes::LogonRetCodes code, const std::string& newPin) {
  clearConnections();
  code_ = code;
  newPin_ = newPin;
}

std::string SrvLogonError::getGUIMessage() const {
  std::string message = code_ < std::size(kMessages) ? kMessages[code_] : "";
  if (code_ == CommonTypes::PinChanged) message += newPin_;
  return message;
}

void SrvLogonError::fields(auto& self, auto&& field) {
  field("code", self.code_);
  field("newPin", secret(self.newPin_));
}

template class Command<SrvLogonError>;
template class CachedCmdCreator<SrvLogonError>;

}  // namespace poker

#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvErrorDisconnected.h>

#include <iterator>

namespace poker {

namespace {

struct Texts {
  const char* name;
  const char* visual;
};

// By error code; the last row serves every code beyond.
constexpr Texts kDisconnectTexts[] = {
    {"SrvErr_BadReplay", "Internal communication error. BadReplay"},
    {"SrvErr_BadGameID", "This table has been removed.\nGo to Lobby and choose another table."},
    {"SrvErr_BadCommand", "Internal communication error. BadCommand"},
    {"SrvErr_InternalError", "Server internal error."},
    {"SrvErr_DisconnectConn", "Error - Connection Closed Forcedly from Server"},
    {"SrvErr_Banned",
     "Your account have been disabled from the administration.\nPlease contact the support for more details."},
    {"SrvErr_Reconnect", "Internal error."},
    {"Niakoi pak e zabravil da napishe neshto ;))", "Internal error."},
};

const Texts& textsOf(SrvErrorDisconnected::ErrorCode code) {
  return code < std::size(kDisconnectTexts) ? kDisconnectTexts[code] : *std::rbegin(kDisconnectTexts);
}

}  // namespace

void SrvErrorDisconnected::init(ErrorCode errorCode) {
  clearConnections();
  errorCode_ = errorCode;
}

const char* SrvErrorDisconnected::errCodeToString() const { return textsOf(errorCode_).name; }

const char* SrvErrorDisconnected::errCodeToVisualString() const { return textsOf(errorCode_).visual; }

void SrvErrorDisconnected::fields(auto& self, auto&& field) {
  field.zeros(3);
  field("errorCode", self.errorCode_);
}

template class Command<SrvErrorDisconnected>;
template class CachedCmdCreator<SrvErrorDisconnected>;

}  // namespace poker

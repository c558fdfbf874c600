#include <hostkit/SessionState.h>

#include <initializer_list>
#include <span>
#include <stdexcept>
#include <string>

namespace poker {
namespace {

void setByName(AllowedCommands& table, SessionState state, std::string_view name, bool allowed) {
  const CommandDescription* found = findCommand(name);
  if (found == nullptr) throw std::invalid_argument("no command is called " + std::string(name));
  table.set(state, found->family, found->code, allowed);
}

void allowDirection(AllowedCommands& table, SessionState state, CommandDirection direction) {
  for (const CommandDescription& command : commandCatalogue()) {
    if (command.direction == direction) table.set(state, command.family, command.code, true);
  }
}

template <class... Commands>
void allowEach(AllowedCommands& table, SessionState state) {
  (table.allow<Commands>(state), ...);
}
template <class... Commands>
void denyEach(AllowedCommands& table, SessionState state) {
  (table.deny<Commands>(state), ...);
}

}  // namespace

std::string_view toText(SessionState state) {
  switch (state) {
    case SessionState::Connected:
      return "Connected";
    case SessionState::ShakenHands:
      return "ShakenHands";
    case SessionState::LoggedOn:
      return "LoggedOn";
    case SessionState::Seated:
      return "Seated";
    case SessionState::Closing:
      return "Closing";
  }
  return "unknown";
}

AllowedCommands AllowedCommands::forServer() {
  AllowedCommands table;
  allowEach<ClHandShake, ClBye>(table, SessionState::Connected);
  allowEach<ClKeepAlive, ClPing, ClBye, ClSSLHandshakeData, ClLogon, ClMakeNewAccount, ClMiscForgotPass>(
      table, SessionState::ShakenHands);
  for (const SessionState state : {SessionState::LoggedOn, SessionState::Seated}) {
    allowDirection(table, state, CommandDirection::ClientToServer);
    denyEach<ClHandShake, ClLogon, ClMakeNewAccount, ClMiscForgotPass, ClScriptSetDealer, UpdateHardwareInfo>(table,
                                                                                                              state);
  }
  denyEach<ClLeaveSeat, ClMoreMoney, ClUserAction, ClBack, ClActionInAdvance, ClBuyChips, ClTurnReceived>(
      table, SessionState::LoggedOn);
  return table;
}

AllowedCommands AllowedCommands::forClient() {
  AllowedCommands table;
  allowEach<SrvHandShaked, SrvConnectError, SrvBusy, ServiceNotAvailable, SrvForward, SrvMaintenance,
            SrvErrorDisconnected, SrvNewClientVersionAvail>(table, SessionState::Connected);
  for (const SessionState state : {SessionState::ShakenHands, SessionState::LoggedOn, SessionState::Seated}) {
    allowDirection(table, state, CommandDirection::ServerToClient);
  }
  return table;
}

void AllowedCommands::allow(SessionState state, std::string_view name) { setByName(*this, state, name, true); }

void AllowedCommands::deny(SessionState state, std::string_view name) { setByName(*this, state, name, false); }

}  // namespace poker

#pragma once

// The commands that open, keep alive, measure and close a connection, log users on and register them.

#include <CommandProcessor/commands/session/ClBye.h>
#include <CommandProcessor/commands/session/ClHandShake.h>
#include <CommandProcessor/commands/session/ClKeepAlive.h>
#include <CommandProcessor/commands/session/ClLogon.h>
#include <CommandProcessor/commands/session/ClMakeNewAccount.h>
#include <CommandProcessor/commands/session/ClMyNewScreenName.h>
#include <CommandProcessor/commands/session/ClPing.h>
#include <CommandProcessor/commands/session/ClSSLHandshakeData.h>
#include <CommandProcessor/commands/session/ClSendUserPass.h>
#include <CommandProcessor/commands/session/ClValidateEmail.h>
#include <CommandProcessor/commands/session/ServiceNotAvailable.h>
#include <CommandProcessor/commands/session/SrvBusy.h>
#include <CommandProcessor/commands/session/SrvConnectError.h>
#include <CommandProcessor/commands/session/SrvEmailValidated.h>
#include <CommandProcessor/commands/session/SrvErrorDisconnected.h>
#include <CommandProcessor/commands/session/SrvForward.h>
#include <CommandProcessor/commands/session/SrvHandShaked.h>
#include <CommandProcessor/commands/session/SrvKeepAliveReply.h>
#include <CommandProcessor/commands/session/SrvLogonChange.h>
#include <CommandProcessor/commands/session/SrvLogonError.h>
#include <CommandProcessor/commands/session/SrvLogonOk.h>
#include <CommandProcessor/commands/session/SrvMaintenance.h>
#include <CommandProcessor/commands/session/SrvNewClientVersionAvail.h>
#include <CommandProcessor/commands/session/SrvPasswordError.h>
#include <CommandProcessor/commands/session/SrvPing.h>
#include <CommandProcessor/commands/session/SrvRegistrationFail.h>
#include <CommandProcessor/commands/session/SrvRegistrationOk.h>
#include <CommandProcessor/commands/session/SrvRequestPass.h>
#include <CommandProcessor/commands/session/SrvSSLHandshakeData.h>
#include <CommandProcessor/commands/session/SrvShowSignOnUser.h>
#include <CommandProcessor/commands/session/UpdateHardwareInfo.h>

#pragma once

// The commands that open, keep alive, measure and close a connection.

#include <CommandProcessor/commands/session/ClBye.h>
#include <CommandProcessor/commands/session/ClHandShake.h>
#include <CommandProcessor/commands/session/ClKeepAlive.h>
#include <CommandProcessor/commands/session/ClPing.h>
#include <CommandProcessor/commands/session/ClSSLHandshakeData.h>
#include <CommandProcessor/commands/session/ServiceNotAvailable.h>
#include <CommandProcessor/commands/session/SrvBusy.h>
#include <CommandProcessor/commands/session/SrvConnectError.h>
#include <CommandProcessor/commands/session/SrvErrorDisconnected.h>
#include <CommandProcessor/commands/session/SrvForward.h>
#include <CommandProcessor/commands/session/SrvHandShaked.h>
#include <CommandProcessor/commands/session/SrvKeepAliveReply.h>
#include <CommandProcessor/commands/session/SrvMaintenance.h>
#include <CommandProcessor/commands/session/SrvNewClientVersionAvail.h>
#include <CommandProcessor/commands/session/SrvPing.h>
#include <CommandProcessor/commands/session/SrvSSLHandshakeData.h>

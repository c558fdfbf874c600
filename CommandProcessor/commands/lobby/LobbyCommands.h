#pragma once

// The commands of the lobby: lists of tables and their details, news, wait lists and invitations.

#include <CommandProcessor/commands/lobby/ClAcceptInvite.h>
#include <CommandProcessor/commands/lobby/ClAddGlobalWaitList.h>
#include <CommandProcessor/commands/lobby/ClAddToWaitList.h>
#include <CommandProcessor/commands/lobby/ClGetGameInfo.h>
#include <CommandProcessor/commands/lobby/ClGetServerInfo.h>
#include <CommandProcessor/commands/lobby/ClRejectInvite.h>
#include <CommandProcessor/commands/lobby/ClRemoveFromWaitList.h>
#include <CommandProcessor/commands/lobby/SrvAddToWaitListError.h>
#include <CommandProcessor/commands/lobby/SrvAddToWaitListOk.h>
#include <CommandProcessor/commands/lobby/SrvGameInfo.h>
#include <CommandProcessor/commands/lobby/SrvNews.h>
#include <CommandProcessor/commands/lobby/SrvNewsType.h>
#include <CommandProcessor/commands/lobby/SrvOneUser.h>
#include <CommandProcessor/commands/lobby/SrvRemoveFromWaitListError.h>
#include <CommandProcessor/commands/lobby/SrvRemoveFromWaitListOk.h>
#include <CommandProcessor/commands/lobby/SrvServerCountersInfo.h>
#include <CommandProcessor/commands/lobby/SrvServerInfo.h>
#include <CommandProcessor/commands/lobby/SrvStringMapCommand.h>
#include <CommandProcessor/commands/lobby/SrvWaitList.h>

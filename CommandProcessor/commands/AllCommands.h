#pragma once

// Every command class. For a host that decodes them all; code that needs a few includes those headers alone.

#include <CommandProcessor/commands/ClMiscUserBased.h>
#include <CommandProcessor/commands/SrvCommandGame.h>
#include <CommandProcessor/commands/SrvUnknownValues.h>
#include <CommandProcessor/commands/account/AccountCommands.h>
#include <CommandProcessor/commands/lobby/LobbyCommands.h>
#include <CommandProcessor/commands/session/SessionCommands.h>
#include <CommandProcessor/commands/table/TableCommands.h>
#include <CommandProcessor/commands/tournament/TournamentCommands.h>
#include <CommandProcessor/wire/SrvCompressedCommands.h>

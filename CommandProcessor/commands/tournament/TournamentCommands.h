#pragma once

// The commands of tournaments: their lists and pictures in the lobby, subscriptions, registration, levels, moves
// between tables, re-buys and add-ons.

#include <CommandProcessor/commands/tournament/ClBigInfoSent.h>
#include <CommandProcessor/commands/tournament/ClGetExtraMoney.h>
#include <CommandProcessor/commands/tournament/ClGetMultiInitializeInfo.h>
#include <CommandProcessor/commands/tournament/ClGetTourDetails.h>
#include <CommandProcessor/commands/tournament/ClGetTourMoney.h>
#include <CommandProcessor/commands/tournament/ClGetTourTableInfo.h>
#include <CommandProcessor/commands/tournament/ClGetTournamentsInfo.h>
#include <CommandProcessor/commands/tournament/ClGetUpdateInfo.h>
#include <CommandProcessor/commands/tournament/ClMoveMe2MyTable.h>
#include <CommandProcessor/commands/tournament/ClSubscribeForTable.h>
#include <CommandProcessor/commands/tournament/ClTourRegister.h>
#include <CommandProcessor/commands/tournament/ClTourUnregister.h>
#include <CommandProcessor/commands/tournament/ClUnsubscribeClient.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>
#include <CommandProcessor/commands/tournament/ExtraMoneyRequest.h>
#include <CommandProcessor/commands/tournament/SrvGetExtraMoneyReply.h>
#include <CommandProcessor/commands/tournament/SrvLevelSwitch.h>
#include <CommandProcessor/commands/tournament/SrvMultiTourDetailedInfo.h>
#include <CommandProcessor/commands/tournament/SrvMultiTourInitialize.h>
#include <CommandProcessor/commands/tournament/SrvTakeSeatInfo.h>
#include <CommandProcessor/commands/tournament/SrvTourDetails.h>
#include <CommandProcessor/commands/tournament/SrvTourMoney.h>
#include <CommandProcessor/commands/tournament/SrvTourMoveToTable.h>
#include <CommandProcessor/commands/tournament/SrvTourPlayerFinished.h>
#include <CommandProcessor/commands/tournament/SrvTourProtectionError.h>
#include <CommandProcessor/commands/tournament/SrvTourRegisterResult.h>
#include <CommandProcessor/commands/tournament/SrvTourStartInfo.h>
#include <CommandProcessor/commands/tournament/SrvTourTableInfo.h>
#include <CommandProcessor/commands/tournament/SrvTourTourneyStatus.h>
#include <CommandProcessor/commands/tournament/SrvTourUnregisterResult.h>
#include <CommandProcessor/commands/tournament/SrvTournamentsInfo.h>
#include <CommandProcessor/commands/tournament/SrvUpdatePlayers.h>
#include <CommandProcessor/commands/tournament/SrvUpdatePlayersMoney.h>
#include <CommandProcessor/commands/tournament/SrvUpdatePrizeDescr.h>
#include <CommandProcessor/commands/tournament/SrvUpdatePrizeFund.h>
#include <CommandProcessor/commands/tournament/SrvUpdateTables.h>
#include <CommandProcessor/commands/tournament/SrvUpdateText.h>

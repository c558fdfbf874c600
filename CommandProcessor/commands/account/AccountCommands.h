#pragma once

// The commands of accounts: profiles, pictures, promotions, hand histories, the cashier.

#include <CommandProcessor/commands/account/ClGetHandHistory.h>
#include <CommandProcessor/commands/account/ClGetHighHand.h>
#include <CommandProcessor/commands/account/ClGetNewPicture.h>
#include <CommandProcessor/commands/account/ClGetPlayerProfile.h>
#include <CommandProcessor/commands/account/ClMiscAnnounceTour.h>
#include <CommandProcessor/commands/account/ClMiscCancelWithdrawal.h>
#include <CommandProcessor/commands/account/ClMiscCashierInfo.h>
#include <CommandProcessor/commands/account/ClMiscChnagePassword.h>
#include <CommandProcessor/commands/account/ClMiscDumpManager.h>
#include <CommandProcessor/commands/account/ClMiscForgotPass.h>
#include <CommandProcessor/commands/account/ClMiscGenerateSession.h>
#include <CommandProcessor/commands/account/ClMiscGetCreditCardInfo.h>
#include <CommandProcessor/commands/account/ClMiscGetPromoInfo.h>
#include <CommandProcessor/commands/account/ClMiscIncreasePlayMoney.h>
#include <CommandProcessor/commands/account/ClMiscSendTourInfo.h>
#include <CommandProcessor/commands/account/ClMiscSetupAccount.h>
#include <CommandProcessor/commands/account/ClRplGetHandHistory.h>
#include <CommandProcessor/commands/account/ClUpdatePlayerProfile.h>
#include <CommandProcessor/commands/account/ClUpdateUserAddress.h>
#include <CommandProcessor/commands/account/ClUpdateUserPic.h>
#include <CommandProcessor/commands/account/SrvCashierOperationFail.h>
#include <CommandProcessor/commands/account/SrvCashierStatus.h>
#include <CommandProcessor/commands/account/SrvCreditCardInfo.h>
#include <CommandProcessor/commands/account/SrvHighHandInfo.h>
#include <CommandProcessor/commands/account/SrvPlayMoneyMessage.h>
#include <CommandProcessor/commands/account/SrvPlayerProfile.h>
#include <CommandProcessor/commands/account/SrvPromoInfo.h>
#include <CommandProcessor/commands/account/SrvPromoNotify.h>
#include <CommandProcessor/commands/account/SrvRplHandHistory.h>
#include <CommandProcessor/commands/account/SrvRplHandHistoryList.h>
#include <CommandProcessor/commands/account/SrvSendUserPic.h>
#include <CommandProcessor/commands/account/SrvSessionCreated.h>
#include <CommandProcessor/commands/account/SrvTransHistory.h>
#include <CommandProcessor/commands/account/SrvUserWonPromotion.h>

#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/ProcessorFamily.h>
#include <CommandProcessor/platform/Export.h>

namespace poker {

/// Handles on the server what clients send about accounts, the cashier, profiles, pictures and replays. The host
/// derives from it, gives processCommand its body and overrides the handlers that it serves; the others do nothing.
///
/// The handlers take the command alone and no results: the host sends the answers, commands of the server family, in
/// its own way. A handler runs on the thread that dispatched the command and never releases it. The operations stand in
/// slot order, which is binding: the destructor, processCommand, then the handlers; a new one goes to the end.
class COMMANDPROCESSOR_API ClientMiscCmdProcessor {
 public:
  /// What process() of these commands takes and the handlers do without.
  using Results = ProcessorTraits<ClientMiscCmdProcessorType>::Results;

  virtual ~ClientMiscCmdProcessor() = default;

  /// Where the host calls the command's process(); does nothing by default. The dispatcher reports the flag given at
  /// registration.
  virtual void processCommand(PokerCommandTmpl<ClientMiscCmdProcessorType>&) {}

  /// A user asks for its bonus money: SrvPromoInfo.
  virtual void onClMiscGetPromoInfo(ClMiscGetPromoInfo&) {}
  /// A user asks for a tournament to be announced.
  virtual void onClAnnounceTour(ClMiscAnnounceTour&) {}
  /// A user opens the cashier: SrvCashierStatus.
  virtual void onClMiscCashierInfo(ClMiscCashierInfo&) {}
  /// A user asks for a session outside the table server: SrvSessionCreated.
  virtual void onClMiscGenerateSession(ClMiscGenerateSession&) {}
  /// A user changes its password.
  virtual void onClMiscChangePassword(ClMiscChnagePassword&) {}
  /// A user asks for a tournament's details to be sent to it.
  virtual void onClMiscSendTourInfo(ClMiscSendTourInfo&) {}
  /// A user forgot its password and gives its name.
  virtual void onClMiscForgotPass(ClMiscForgotPass&) {}
  /// The cashier asks for the user's cards: SrvCreditCardInfo.
  virtual void onClMiscGetCreditCardInfo(ClMiscGetCreditCardInfo&) {}
  /// A user chooses its screen name after SrvLogonError asked for one: SrvLogonOk or SrvLogonError.
  virtual void onClMyNewScreenName(ClMyNewScreenName&) {}
  /// A user sets its account up for real money; SrvLogonChange tells when that is done.
  virtual void onClMiscSetupAccount(ClMiscSetupAccount&) {}
  /// One server component passes a user's machine identification to another; its fields never travel.
  virtual void onClUpdateHardwareInfo(UpdateHardwareInfo&) {}
  /// A player asks for hands by a filter: SrvRplHandHistory or SrvRplHandHistoryList.
  virtual void onClRplGetHandHistory(ClRplGetHandHistory&) {}
  /// A user sends the registration form: SrvRegistrationOk or SrvRegistrationFail.
  virtual void onClMakeNewAccount(ClMakeNewAccount&) {}
  /// A user asks for more play money: SrvPlayMoneyMessage. Shares its pair with ClMiscDumpManager.
  virtual void onClMiscIncreasePlayMoney(ClMiscIncreasePlayMoney&) {}
  /// A user takes back a withdrawal.
  virtual void onClMiscCancelWithdrawal(ClMiscCancelWithdrawal&) {}
  /// A user enters the code that was sent by e-mail: SrvEmailValidated.
  virtual void onClValidateEmail(const ClValidateEmail&) {}
  /// A client asks for a user's profile: SrvPlayerProfile.
  virtual void onClGetPlayerProfile(const ClGetPlayerProfile&) {}
  /// A user changes its profile; the host stores it.
  virtual void onClUpdatePlayerProfile(const ClUpdatePlayerProfile&) {}
  /// A client asks for a user's picture: SrvSendUserPic.
  virtual void onClGetNewPicture(const ClGetNewPicture&) {}
  /// A user uploads its picture, at most 65535 bytes; the host stores it.
  virtual void onClUpdateUserPic(const ClUpdateUserPic&) {}
  /// An operator asks for a dump of the service's state. Shares its pair with ClMiscIncreasePlayMoney.
  virtual void onClMiscDumpManager(const ClMiscDumpManager&) {}
};

}  // namespace poker

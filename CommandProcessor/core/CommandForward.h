#pragma once

#include <CommandProcessor/platform/Export.h>

// The first declaration of every class that has to be visible outside the library. g++ hides a template that it
// instantiates on a class which it first saw without the API macro, and warns of the macro on a declaration that comes
// after the definition. So whoever names one of these classes includes this header and declares nothing itself, and
// whoever defines one includes it first.

namespace poker {

class COMMANDPROCESSOR_API PokerCommandI;
class COMMANDPROCESSOR_API PokerCommand;
template <class ProcessorType>
class COMMANDPROCESSOR_API PokerCommandTmpl;
template <class Command, int N>
class CommandsResult;  // wholly in its header

class COMMANDPROCESSOR_API CmdDispatcherI;
class COMMANDPROCESSOR_API CmdDispatcher;

class COMMANDPROCESSOR_API ClientCmdProcessor;
class COMMANDPROCESSOR_API SrvCmdProcessor;
class COMMANDPROCESSOR_API ClientTourCmdProcessor;
class COMMANDPROCESSOR_API SrvTourCmdProcessor;
class COMMANDPROCESSOR_API ClientMiscCmdProcessor;
class COMMANDPROCESSOR_API SrvMiscCmdProcessor;

#define COMMAND(family, code, Class, Processor, handler) class COMMANDPROCESSOR_API Class;
#include <CommandProcessor/core/CommandList.inc>

// Named by handlers and defined by the host alone, if at all: they never travel, the library holds nothing of them, and
// so they carry no API macro.
class CommDisconnected;
class SrvIntrIPMapping;
class SrvIntrDumpRequest;
class SrvIntSendCommand;
class SrvIntGetTableCountCommand;
class SrvIntStopCommand;
class SrvIntShutdownProcessFinishedCommand;
class ClIncresePlayMoney;
class ClCancelWithdraw;
class ClGetRefferalHistory;
class ClReportAffInfo;
class ClUpdateUserDetails;
class SrvWaitListInit;

}  // namespace poker

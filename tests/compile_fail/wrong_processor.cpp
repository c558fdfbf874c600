// expect-error: (cannot bind|no known conversion|cannot convert|no matching|no viable)
// Direction is part of the type: what a client sends is no command for the client's processor.
#include <CommandProcessor/commands/session/ClKeepAlive.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>

void misuse(poker::ClKeepAlive& command, poker::SrvCmdProcessor& processor) { processor.processCommand(command); }

// expect-error: deleted
// A copy comes from the pool too: clone().
#include <CommandProcessor/commands/session/ClKeepAlive.h>

void misuse(poker::ClKeepAlive& command) { poker::ClKeepAlive copy(command); }

// expect-error: private
// Commands come from their pool alone.
#include <CommandProcessor/commands/session/ClKeepAlive.h>

void misuse() { poker::ClKeepAlive command; }

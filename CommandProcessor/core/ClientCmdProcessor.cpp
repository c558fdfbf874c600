#include <CommandProcessor/core/ClientCmdProcessor.h>

namespace poker {

// Pure, and yet with a body: what a derived processor can fall back to.
bool ClientCmdProcessor::processCommand(PokerCommandTmpl<ClientCmdProcessorType>&) { return false; }

}  // namespace poker

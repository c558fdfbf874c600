#include <tools/cmdproc/input/Batches.h>

namespace poker::cmdproc {

SrvCompressedCommands* asBatch(PokerCommandI& command) { return dynamic_cast<SrvCompressedCommands*>(&command); }

}  // namespace poker::cmdproc

#include <hostkit/CommandFactory.h>
#include <hostkit/StreamFramer.h>
#include <inspect/schema/Schema.h>
#include <tools/cmdproc/input/Batches.h>

namespace poker::cmdproc {

bool BatchContent::hasSecrets() const {
  for (std::span<const std::uint8_t> rest = bytes_; !rest.empty();) {
    const auto frame = takeFrame(rest);
    const CommandClass* named =
        CommandFactory::find(static_cast<ProcessorFamily>(frame[kLengthSlot + 1]), frame[kLengthSlot]);
    if (named == nullptr || CommandSchema::find(named->name())->hasSecrets()) return true;
  }
  return false;
}

SrvCompressedCommands* asBatch(PokerCommandI& command) { return dynamic_cast<SrvCompressedCommands*>(&command); }

}  // namespace poker::cmdproc

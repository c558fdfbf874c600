#include <hostkit/Encode.h>

#include <hostkit/CommandFactory.h>

#include <string>

namespace poker {

std::span<const std::uint8_t> encodeCommand(const PokerCommandI& command, SerializeCommandBuf& buffer) {
  // A class that the catalogue does not know is a host's own: it has nothing to ask.
  const CommandClass* found = CommandFactory::find(command);
  if (found != nullptr && !found->fitsOnWire(command)) {
    throw EncodeError(std::string(found->name()) + " holds more than its counts can tell");
  }
  buffer.reset();
  command.serialize(buffer);
  std::uint32_t size = 0;
  const std::uint8_t* bytes = buffer.finish(size);
  return {bytes, size};
}

}  // namespace poker

#include <examples/holdem/siege/Frames.h>

#include <CommandProcessor/wire/WireNumber.h>
#include <RandomFields.h>
#include <hostkit/CommandFactory.h>
#include <inspect/CommandFields.h>

#include <algorithm>

namespace poker::holdem {

Bytes rawFrame(std::uint32_t length, const Bytes& rest) {
  Bytes bytes(4 + rest.size());
  wire::storeLittleEndian(bytes.data(), length);
  std::copy(rest.begin(), rest.end(), bytes.begin() + 4);
  return bytes;
}

std::vector<Bytes> catalogueFrames(CommandDirection direction, std::mt19937_64& random) {
  std::vector<Bytes> frames;
  for (const CommandClass& row : CommandFactory::classes()) {
    if (row.direction() != direction || row.create == nullptr) continue;
    const CommandHandle<> command(row.create());
    try {
      test::RandomFields values(random());
      CommandFields::of(*command)->assign(*command, values);
      frames.push_back(frameOf(*command));
    } catch (const FieldValueError&) {
      // Some fields are held narrower than they travel; the next class will do.
    } catch (const EncodeError&) {
    }
  }
  return frames;
}

}  // namespace poker::holdem

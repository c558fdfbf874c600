// The records of many texts and bytes, each on its own: reading against a model that looks at the bytes alone, and back.
// The first byte of an input says which record, the others are the record's.

#include <CommandProcessor/wire/CommandDeserializeException.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <CommandProcessor/wire/Int2StringSer.h>
#include <CommandProcessor/wire/RawDataHolder.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <CommandProcessor/wire/String2String.h>
#include <fuzz/support/Frames.h>
#include <fuzz/support/Reading.h>

#include <algorithm>
#include <iterator>

using namespace poker;
using namespace poker::fuzz;

namespace {

/// What reading must come to.
struct Expected {
  std::string_view message;  // empty: it succeeds
  std::size_t position = 0;
};

/// Walks the bytes of a record: the width of its count, of what stands in front of each text, and how many texts.
struct Layout {
  std::string_view name;
  std::size_t count;
  std::size_t key;
  std::size_t texts;
  std::uint64_t most;
  void (*check)(std::span<const std::uint8_t>, const Expected&);

  Expected expected(std::span<const std::uint8_t> bytes) const {
    Expected end;
    if (bytes.size() < count) return {test::kNumberFails, 0};
    std::uint64_t elements = 0;
    for (std::size_t i = 0; i < count; ++i) elements |= std::uint64_t{bytes[i]} << 8 * i;
    end.position = count;
    if (elements > most) return {StringList::kTooManyElements, count};
    if (texts == 0) {
      if (bytes.size() - count < elements) return {test::kNumberFails, count};
      return {"", count + static_cast<std::size_t>(elements)};
    }
    for (std::uint64_t i = 0; i < elements; ++i) {
      if (bytes.size() - end.position < key) return {test::kNumberFails, end.position};
      end.position += key;
      for (std::size_t text = 0; text < texts; ++text) {
        if (end.position == bytes.size()) return {test::kStringFails, end.position};
        const auto rest = bytes.subspan(end.position);
        const auto nul = std::find(rest.begin(), rest.end(), std::uint8_t{0});
        if (nul == rest.end()) return {test::kLengthFails, end.position};
        end.position += static_cast<std::size_t>(nul - rest.begin()) + 1;
      }
    }
    return end;
  }
};

template <class T>
void check(std::span<const std::uint8_t> bytes, const Expected& expected) {
  static T record, again;
  static SerializeCommandBuf first(4096), second(4096);
  DeserializeCommandBuf in(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  {
    const MemoryBound bound(bytes.size());
    try {
      record.deserialize(in);
      require(expected.message.empty(), "reading fails where bytes are missing");
    } catch (CommandDeserializeException* thrown) {
      const std::unique_ptr<CommandDeserializeException> owner(thrown);
      require(owner->message() == expected.message, "reading fails with the message of what is missing");
    }
  }
  require(in.position() == expected.position, "reading stops where the model stops");
  if (!expected.message.empty()) return;

  require(record.fitsOnWire(), "what was read fits on the wire");
  first.reset();
  record.serialize(first);
  DeserializeCommandBuf written(first.data() + 4, first.used() - 4);
  again.deserialize(written);
  require(written.remaining() == 0 && again == record, "what was written reads back as the same");
  second.reset();
  again.serialize(second);
  require(first.used() == second.used() && std::equal(first.data(), first.data() + first.used(), second.data()),
          "the same values are written as the same bytes");
}

constexpr std::uint64_t kAny = UINT64_MAX;
constexpr Layout kLayouts[] = {
    {"StringList", 4, 0, 1, StringList::kMostElements, check<StringList>},
    {"StringVector", 4, 0, 1, kAny, check<StringVector>},
    {"String2String", 1, 0, 2, kAny, check<String2String>},
    {"Int2StringSer", 1, 4, 1, kAny, check<Int2StringSer>},
    {"RawDataHolder", 4, 0, 0, kAny, check<RawDataHolder>},
};

const Layout& layoutOf(std::uint8_t byte) { return kLayouts[byte % std::size(kLayouts)]; }

}  // namespace

std::vector<Bytes> fuzz::seeds() {
  std::vector<Bytes> made;
  for (const GoldenLine& line : goldenLines("values")) {
    for (std::size_t i = 0; i < std::size(kLayouts); ++i) {
      if (kLayouts[i].name != line.name) continue;
      Bytes& seed = made.emplace_back(1, static_cast<std::uint8_t>(i));
      seed.insert(seed.end(), line.bytes.begin(), line.bytes.end());
    }
  }
  require(!made.empty(), "the records have golden bytes");
  return made;
}

void fuzz::mutate(Bytes& input, Random& random) {
  if (input.empty() || random.oneIn(2)) return mutateBytes(input, random);
  const Layout& layout = layoutOf(input[0]);
  if (input.size() <= layout.count || random.oneIn(4)) {
    input[0] = random.byte();
    return mutateBytes(input, random, 1);
  }
  // The count: one more or less than it is, or an edge.
  std::uint64_t count = 0;
  for (std::size_t i = 0; i < layout.count; ++i) count |= std::uint64_t{input[1 + i]} << 8 * i;
  count = random.oneIn(8) ? StringList::kMostElements + random.below(2) : edge(count, input.size(), random);
  for (std::size_t i = 0; i < layout.count; ++i) input[1 + i] = static_cast<std::uint8_t>(count >> 8 * i);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const Layout& layout = layoutOf(data[0]);
  const std::span<const std::uint8_t> bytes(data + 1, size - 1);
  layout.check(bytes, layout.expected(bytes));
  return 0;
}

// What damaged messages do to every class and to every way of reading one: nothing. CP_DAMAGED_FRAMES sets how many are
// tried at least; the systematic ones are tried in any case, fewer of them where a sanitizer watches.

#include <CommandProcessor/types/FieldJson.h>
#include <hostkit/Batch.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Decode.h>
#include <hostkit/Encode.h>
#include <hostkit/StreamFramer.h>
#include <inspect/schema/WireWalk.h>
#include <tests/support/AllocationCounter.h>
#include <tests/support/Damage.h>
#include <tests/support/EveryClass.h>
#include <tests/support/SchemaBytes.h>

#include <gtest/gtest.h>

#include <time.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace poker::test {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
#else
constexpr bool kSanitized = false;
#endif

/// Why times are not judged in this run; empty when they are.
std::string untimed() {
  if (kSanitized) return "a sanitizer watches";
#ifndef NDEBUG
  return "this build is not optimized";
#else
  return std::getenv("CP_UNTIMED") != nullptr ? "CP_UNTIMED is set" : "";
#endif
}
const bool isTimed = untimed().empty();

constexpr double timeBudget(std::size_t frame) { return 100.0 * static_cast<double>(frame) + 20'000; }  // nanoseconds

/// Time of this thread alone, since others want the processor too.
double threadNanoseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

struct Worst {
  double share = 0;  // of what is allowed
  std::string where;

  void see(double its, const ClassUnderTest& at, const Bytes& bytes) {
    if (its <= share) return;
    share = its;
    where = std::string(at.name()) + ", " + std::to_string(bytes.size() + 4) + " bytes";
  }
  void see(const Worst& other) {
    if (other.share > share) *this = other;
  }
};

/// What came of a number of messages.
struct Tally {
  std::map<std::string, std::uint64_t> outcomes;
  std::map<std::string, Bytes> faults;  // what went wrong, with a message that did it
  Worst memory, time;

  std::uint64_t frames() const {
    std::uint64_t sum = 0;
    for (const auto& [what, count] : outcomes) sum += count;
    return sum;
  }
  void add(const Tally& other) {
    for (const auto& [what, count] : other.outcomes) outcomes[what] += count;
    faults.insert(other.faults.begin(), other.faults.end());
    memory.see(other.memory);
    time.see(other.time);
  }
  /// Prints the sum, and fails for every fault.
  void report(const char* what) const {
    for (const auto& [fault, bytes] : faults) ADD_FAILURE() << fault << ": " << toHex(bytes).substr(0, 600);
    std::string line = std::to_string(frames()) + ' ' + what + ':';
    for (const auto& [outcome, count] : outcomes) {
      line += ' ' + std::to_string(count) + (outcome.empty() ? " read" : " \"" + outcome + '"') + ',';
    }
    std::printf("%s worst memory %.0f %% of the bound (%s), worst time ", line.c_str(), 100 * memory.share,
                AllocationCounter::counts() ? memory.where.c_str() : "not counted here");
    if (isTimed)
      std::printf("%.0f %% (%s)\n", 100 * time.share, time.where.c_str());
    else
      std::printf("not judged: %s\n", untimed().c_str());
  }
};

/// "players[3].name" of ClassName as "ClassName.players.name".
std::string fieldName(const ClassUnderTest& its, std::string_view path) {
  std::string name = std::string(its.name()) + '.';
  bool inside = false;
  for (const char c : path) {
    inside = c == '[' || (inside && c != ']');
    if (!inside && c != ']') name += c;
  }
  return name;
}

/// Where what is written may lawfully differ from what was read, beside flags, cards, bools and padding, of which several
/// forms mean the same, maps, which are in key order and hold a key once, and counts below 1 that mean none.
struct Asymmetry {
  std::string_view field;  ///< the end of its name
  const char* why;
};
constexpr Asymmetry kLawful[] = {
    {".choice.first", "a choice of nothing at all is written as one byte"},
    {".buyIn.first", "as above"},
    {".fee.first", "as above"},
    {".rebuy.first", "as above"},
    {".addOn.first", "as above"},
    {".macAddresses", "hardware without any value is written as one byte"},
    {"SrvGameStart.seats", "a set: ascending, each once"},
    {".removedTables", "as above"},
    {".removedTableCount", "as above"},
    {".removedPlayers", "as above"},
    {".removedPlayerCount", "as above"},
    {".removedTournaments", "as above"},
    {".rows.place", "prizes are in the order of their places"},
    {"SrvLevelSwitch.level", "held in 16 bits of the 32 that travel"},
};

/// Kinds of fields of which several forms mean the same, and one is written.
bool hasManyForms(const SchemaField& field) {
  return field.type == FieldType::Bool || field.type == FieldType::Zeros || field.isPacked();
}

bool isLawful(std::string_view name, const SchemaField& field) {
  if (field.belowOneIsNone || field.type == FieldType::Map || name.ends_with(".key")) return true;
  return std::any_of(std::begin(kLawful), std::end(kLawful),
                     [&](const Asymmetry& lawful) { return name.ends_with(lawful.field); });
}

/// Reads messages of one class in every way there is, and holds the ways against each other.
class Attack {
 public:
  Attack(const ClassUnderTest& its, Tally& tally) : its_(its), tally_(tally) {}

  void operator()(std::span<const std::uint8_t> message) {
    const Bytes bytes(message.begin(), message.end());  // a block of its own, so that a sanitizer sees a read beyond it
    its_.clearPool();
    const CommandHandle<> command(its_.fields->create());
    std::uint32_t position = 0;
    const std::string failure = readMeasured(*command, bytes, position);
    ++tally_.outcomes[failure];
    const bool whole = failure.empty() && position == bytes.size();
    if (its_.isReceived()) byHost(bytes, failure, position);
    bySchema(bytes, failure, position);
    if (failure.empty() && its_.name() != "SrvPing") again(*command, bytes, whole);
  }

 private:
  void check(bool right, const char* fault, const Bytes& bytes) {
    if (!right) tally_.faults.try_emplace(std::string(its_.name()) + " " + fault, bytes);
  }

  /// By the class itself, within its bounds of memory and time.
  std::string readMeasured(PokerCommandI& command, const Bytes& bytes, std::uint32_t& position) {
    const std::size_t frame = bytes.size() + 4;
    const AllocationCounter memory;
    const auto start = std::chrono::steady_clock::now();
    std::string failure = read(command, bytes, position);
    double took = std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
    const std::size_t peak = memory.peak();
    check(peak <= decodeBudget(frame), "takes too much memory", bytes);
    tally_.memory.see(static_cast<double>(peak) / static_cast<double>(decodeBudget(frame)), its_, bytes);
    check(failure.empty() || isReadMessage(failure), "fails with another message", bytes);
    if (!isTimed) return failure;
    for (int more = 0; more < 40 && took > timeBudget(frame); ++more) {  // was the machine busy?
      if (more % 4 == 3) std::this_thread::sleep_for(std::chrono::milliseconds(20));
      const CommandHandle<> fresh(its_.fields->create());
      const double before = threadNanoseconds();
      read(*fresh, bytes, position);
      took = std::min(took, threadNanoseconds() - before);
    }
    check(took <= timeBudget(frame), "takes too long", bytes);
    tally_.time.see(took / timeBudget(frame), its_, bytes);
    return failure;
  }

  std::string read(PokerCommandI& command, const Bytes& bytes, std::uint32_t& position) {
    DeserializeCommandBuf in(bytes.data() + 2, static_cast<std::uint32_t>(bytes.size()) - 2);
    std::string failure = messageOf([&] { command.deserialize(in); });
    check(in.position() + in.remaining() + 2 == bytes.size(), "has lost its place", bytes);
    position = 2 + in.position();
    return failure;
  }

  void byHost(const Bytes& bytes, const std::string& failure, std::uint32_t position) {
    const std::uint32_t before = its_.idle();
    {
      const DecodeResult result = decodeCommand(bytes, {its_.host->direction(), true, true});
      using Kind = DecodeError::Kind;
      const Kind expected = !failure.empty()           ? Kind::Malformed
                            : position != bytes.size() ? Kind::TrailingBytes
                                                       : Kind::None;
      const DecodeError& error = result.error;
      check(error.kind == expected && static_cast<bool>(result) == (expected == Kind::None), "is judged wrongly",
            bytes);
      if (result) {
        check(CommandFactory::find(*result.command) == its_.host, "becomes another class", bytes);
      } else {
        check(error.offset == position && error.offset + error.remaining == bytes.size() &&
                  error.className == its_.name() && (expected != Kind::Malformed || error.message == failure),
              "has an error that tells something else", bytes);
      }
    }
    check(its_.idle() == std::max(before, 1u), "is not back in its pool", bytes);
  }

  /// The walk stops at the beginning of the field that cannot be read: so the failed read has moved nothing.
  void bySchema(const Bytes& bytes, const std::string& failure, std::uint32_t position) {
    const auto problem = walkCommand(*its_.schema, bytes, [](const WirePiece&) {});
    check(problem.has_value() == (!failure.empty() || position != bytes.size()), "is walked to another end", bytes);
    if (!problem) return;
    check(problem->offset == position, "moves in the read that fails", bytes);
    check((problem->field != nullptr) == !failure.empty(), "is walked to another failure", bytes);
  }

  /// What was read can be written. It is written as it was read, but for lawful differences, and from then on stays.
  void again(const PokerCommandI& command, const Bytes& bytes, bool whole) {
    check(its_.host->fitsOnWire(command), "does not fit though it was read", bytes);
    const Bytes written = encode(command);
    if (written == bytes) return;
    const CommandHandle<> second(its_.fields->create());
    std::uint32_t position = 0;
    check(read(*second, written, position).empty() && position == written.size(), "cannot be read again", bytes);
    check(encode(*second) == written, "changes each time it is written", bytes);
    if (whole) judgeAsymmetries(bytes, written);
  }

  void judgeAsymmetries(const Bytes& bytes, const Bytes& written) {
    struct Piece {
      std::string path;
      const SchemaField* field;
      Bytes bytes;
    };
    const auto piecesOf = [&](const Bytes& message) {
      std::vector<Piece> pieces;
      walkCommand(*its_.schema, message, [&](const WirePiece& piece) {
        pieces.push_back({std::string(piece.path), piece.field, Bytes(piece.bytes.begin(), piece.bytes.end())});
      });
      return pieces;
    };
    const auto before = piecesOf(bytes), after = piecesOf(written);
    for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
      if (before[i].bytes == after[i].bytes && before[i].path == after[i].path) continue;
      if (before[i].path == after[i].path && hasManyForms(*before[i].field)) continue;
      const std::string name = fieldName(its_, before[i].path);
      check(isLawful(name, *before[i].field), ("writes another " + name).c_str(), bytes);
      return;  // what follows stands in another order, or is gone
    }
  }

  const ClassUnderTest& its_;
  Tally& tally_;
};

/// Lets each class be attacked, several at a time.
template <class OneClass>
Tally attackAll(const OneClass& attackOne) {
  everyClass();
  Tally sum;
  std::mutex mutex;
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    Tally mine;
    for (std::size_t i; (i = next++) < everyClass().size();) {
      Attack attack(everyClass()[i], mine);
      attackOne(everyClass()[i], attack);
      everyClass()[i].clearPool();
    }
    const std::lock_guard guard(mutex);
    sum.add(mine);
  };
  std::vector<std::thread> threads(std::max(1u, std::thread::hardware_concurrency()));
  for (std::thread& thread : threads) thread = std::thread(work);
  for (std::thread& thread : threads) thread.join();
  return sum;
}

TEST(Damage, IsReadOrRefusedByEveryDecoderAlikeWithinItsBounds) {
  const char* const asked = std::getenv("CP_DAMAGED_FRAMES");
  const std::uint64_t least = asked != nullptr ? std::strtoull(asked, nullptr, 10) : 0;
  const Tally tally = attackAll([&](const ClassUnderTest& its, Attack& attack) {
    const std::vector<Bytes> messages = messagesOf(its);
    std::uint64_t tried = 0;
    const auto count = [&](std::span<const std::uint8_t> message) {
      attack(message);
      ++tried;
    };
    for (const Bytes& message : messages) {
      count(message);
      DamageExtent extent{.keep = 2};
      if (message.size() > 128) extent = {.keep = 2, .places = 64, .values = 32};
      if (message.size() > 512) extent = {.keep = 2, .places = 16, .values = 8};
      if (kSanitized) extent = {.keep = 2, .places = 8, .values = 8};
      forEachDamage(message, count, extent);
    }
    Damager damager(1 + its.host->code(), 2);
    for (std::size_t i = 0; tried < std::max<std::uint64_t>(least / everyClass().size() + 1, 500); ++i) {
      // The long ones are the last, and slow.
      count(damager.next(messages[i % 16 == 0 ? messages.size() - 1 : i % (messages.size() - 1)]));
    }
  });
  tally.report("damaged messages");
}

TEST(Damage, NoOrderOfElementsTakesMoreThanItsShareOfTime) {
  const Tally tally = attackAll([](const ClassUnderTest& its, Attack& attack) {
    for (const Order order : {Order::Ascending, Order::Descending, Order::Random, Order::Equal}) {
      SchemaFill fill{.elements = 16, .text = 0, .order = order};
      Bytes message = schemaBytes(*its.schema, fill);
      for (std::size_t size = 0; message.size() > size && message.size() < 40'000;) {
        size = message.size();
        fill.elements *= 2;
        message = schemaBytes(*its.schema, fill);
      }
      attack(message);
      if (message.size() > 2) attack(std::span(message).first(message.size() - 1));
    }
  });
  tally.report("messages in any order");
  EXPECT_GT(tally.outcomes.at(""), tally.frames() / 3) << "the messages are not what their classes read";
}

// ---- what is around messages

constexpr DecodePolicy kClient = DecodePolicy::of(Side::Client);

/// Frames of a few classes, one after the other, as a server sends them.
Bytes someFrames(int rounds) {
  Bytes stream;
  SerializeCommandBuf buffer(64);
  for (int i = 0; i < rounds; ++i) {
    for (const char* name : {"SrvKeepAliveReply", "SrvMaintenance", "SrvBusy"}) {
      const CommandHandle<> command(CommandFields::of(name)->create());
      const auto frame = encodeCommand(*command, buffer);
      stream.insert(stream.end(), frame.begin(), frame.end());
    }
  }
  return stream;
}

TEST(Damage, OfAStreamLeavesWholeFramesAndAtMostOneError) {
  const Bytes stream = someFrames(2);
  const auto attack = [&](std::span<const std::uint8_t> bytes) {
    for (const bool loggedOn : {false, true}) {
      StreamFramer framer;
      framer.setLoggedOn(loggedOn);
      const AllocationCounter memory;
      std::size_t taken = 0;
      for (std::span<const std::uint8_t> rest = bytes; !rest.empty();) {
        rest = rest.subspan(framer.feed(rest.first(std::min<std::size_t>(rest.size(), 7))));
        Frame frame;
        StreamFramer::Result result;
        while ((result = framer.next(frame)) == StreamFramer::Result::Frame) {
          ASSERT_GE(frame.bytes.size(), kShortestFrame);
          ASSERT_TRUE(std::equal(frame.bytes.begin(), frame.bytes.end(), bytes.data() + taken));
          taken += frame.bytes.size();
          static_cast<void>(decodeCommand(frame.command(), kClient));
        }
        if (result == StreamFramer::Result::Error) break;
        ASSERT_LE(taken + framer.buffered(), bytes.size());
      }
      EXPECT_LE(memory.peak(), decodeBudget(bytes.size()));
    }
  };
  forEachDamage(stream, attack);
  Damager damager(2);
  for (int i = 0; i < 20'000; ++i) attack(damager.next(stream));
}

TEST(Damage, OfABatchIsFoundBeforeItCostsMoreThanABatchMay) {
  SerializeCommandBuf buffer(64);
  const std::span<const std::uint8_t> packed = packBatch(someFrames(20), buffer);
  ASSERT_FALSE(packed.empty());
  const Bytes batch(packed.begin() + kLengthSlot, packed.end());
  std::map<std::string, int> outcomes;
  std::vector<std::uint8_t> frames;
  const auto attack = [&](std::span<const std::uint8_t> bytes) {
    const DecodeResult result = decodeCommand(bytes, kClient);
    if (!result) return;
    auto& command = dynamic_cast<SrvCompressedCommands&>(*result.command);
    const std::uint64_t most = std::min<std::uint64_t>(kLargestBatch, command.compressedSize() * 1032u + 64u);
    frames = {};
    const AllocationCounter memory;
    const std::string problem(unpackBatch(command, frames));
    EXPECT_LE(memory.peak(), most + 32);
    ++outcomes[problem];
    if (!problem.empty()) return;
    for (std::span<const std::uint8_t> rest = frames; !rest.empty();) {
      EXPECT_FALSE(isBatch(rest));
      static_cast<void>(decodeCommand(takeFrame(rest).subspan(kLengthSlot), kClient));
    }
  };
  attack(batch);
  EXPECT_EQ(outcomes[""], 1);
  forEachDamage(batch, attack, {.keep = 2});
  Damager damager(3, 2);
  for (int i = 0; i < 20'000; ++i) attack(damager.next(batch));
  for (const auto& [what, times] : outcomes) {
    std::printf("    %7d batches: %s\n", times, what.empty() ? "sound" : what.c_str());
  }
  EXPECT_EQ(outcomes.size(), 5u) << "some faults were not among the damage, or there is a new one";
}

TEST(Damage, OfJsonIsReadOrRefused) {
  std::atomic<int> parsed = 0, refused = 0;
  attackAll([&](const ClassUnderTest& its, Attack&) {
    const CommandHandle<> command(its.fields->create());
    const Bytes message = schemaBytes(*its.schema);
    EXPECT_EQ(decode(*command, {message.begin() + 2, message.end()}), "");
    const std::string json = shown(*command);
    const auto attack = [&](std::span<const std::uint8_t> text) {
      try {
        FieldsFromJson fields({reinterpret_cast<const char*>(text.data()), text.size()}, JsonSecrets::kShow);
        fields.run([&](FieldVisitor& values) { its.fields->assign(*command, values); });
        ++parsed;
      } catch (const FieldValueError&) {
        ++refused;
      }
    };
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(json.data()), json.size());
    forEachDamage(bytes, attack, {.places = 24, .values = 8});
    Damager damager(4);
    for (int i = 0; i < 200; ++i) attack(damager.next(bytes));
  });
  std::printf("    %d texts parsed, %d refused\n", parsed.load(), refused.load());
  EXPECT_GT(parsed, refused / 1000);
}

}  // namespace
}  // namespace poker::test

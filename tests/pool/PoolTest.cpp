#include <CommandProcessor/commands/session/ClKeepAlive.h>
#include <CommandProcessor/commands/session/ServiceNotAvailable.h>
#include <CommandProcessor/commands/session/SrvKeepAliveReply.h>
#include <CommandProcessor/pool/CachedCmdCreator.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <LogUtil/Log.h>
#include <tests/support/AllocationCounter.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#ifdef CP_TEST_PLUGIN
#include <dlfcn.h>
#endif
#ifdef __linux__
#include <unistd.h>
#endif

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CP_ADDRESSES_CHECKED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define CP_ADDRESSES_CHECKED
#endif

namespace poker {
namespace {

using Pool = CachedCmdCreator<ClKeepAlive>;

/// What a dump writes, a line each.
std::vector<std::string> dump(DebugStaticLogger& logger, const char* name, std::string* log = nullptr) {
  std::vector<std::string> lines;
  Log::setSink([&](const LogRecord& record) {
    lines.emplace_back(record.message);
    if (log != nullptr) *log = record.logger;
  });
  logger.dumpDataIntoLog(name);
  Log::setSink(nullptr);
  return lines;
}

// Before any constructor of this program ran, the pools were ready.
const bool kTookOneEarly = [] {
  ClKeepAlive& command = Pool::create();
  command.init(1);
  command.release();
  return Pool::cashedCmds.tsSize() == 1;
}();

TEST(Pool, IsReadyInStaticConstructors) { EXPECT_TRUE(kTookOneEarly); }

#ifdef CP_TEST_PLUGIN

void* loadPlugin() {
  void* plugin = dlopen(CP_TEST_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  EXPECT_NE(plugin, nullptr) << dlerror();
  return plugin;
}

// What another library takes from a pool is the same pool's, and outlives that library.
TEST(Pool, IsOneForTheWholeProcess) {
  Pool::clearCache();
  void* const plugin = loadPlugin();
  ASSERT_NE(plugin, nullptr);
  EXPECT_EQ(Pool::cashedCmds.tsSize(), 1u) << "the plugin used one while it was loaded";
  EXPECT_EQ(reinterpret_cast<const void* (*)()>(dlsym(plugin, "pluginsPool"))(), &Pool::cashedCmds);
  const auto make = reinterpret_cast<PokerCommandI* (*)(std::uint32_t)>(dlsym(plugin, "makeInPlugin"));
  ClKeepAlive& mine = Pool::create();
  PokerCommandI* theirs = make(77);
  mine.release();
  dlclose(plugin);
  EXPECT_EQ(dynamic_cast<ClKeepAlive&>(*theirs).sequenceNumber(), 77u);
  theirs->release();
  EXPECT_EQ(Pool::cashedCmds.tsSize(), 2u);
}

// Destructors of static and thread-local objects, of this program and of a library that was loaded later, and what is
// called at exit.
bool inDyingProcess = false;
struct UsesThePoolAtExit {
  explicit UsesThePoolAtExit(const char* name_) : name(name_) {}
  ~UsesThePoolAtExit() {
    if (!inDyingProcess) return;
    ClKeepAlive& command = Pool::create();
    command.init(1);
    command.clone()->release();
    command.release();
    Pool::clearCache();
    std::fprintf(stderr, "%s done\n", name);
  }
  const char* name;
};
const UsesThePoolAtExit atExit("static");

TEST(PoolDeathTest, IsUsableUntilTheProcessHasEnded) {
  const auto end = [] {
    inDyingProcess = true;
    loadPlugin();
    static const thread_local UsesThePoolAtExit ofThread("thread-local");
    std::atexit([] { const UsesThePoolAtExit called("atexit"); });
    DebugStaticLogger::instance();
    std::exit(ofThread.name == nullptr);
  };
  // A leak checker that found something would change the exit status.
  EXPECT_EXIT(end(), testing::ExitedWithCode(0), "thread-local done\natexit done\nplugin done\nstatic done");
}

#endif

#ifdef CP_CHECKING

TEST(PoolDeathTest, NoticesWhoUsesAReleasedObject) {
  ClKeepAlive& command = Pool::create();
  command.init(5);
  command.release();
  SerializeCommandBuf out(16);
  const std::uint8_t bytes[4] = {};
  DeserializeCommandBuf in(bytes, sizeof bytes);
  const std::pair<std::string, std::function<void()>> uses[] = {
      {"release", [&] { command.release(); }},
      {"release", [&] { Pool::destroy(command); }},
      {"clone", [&] { command.clone(); }},
      {"serialize", [&] { command.serialize(out); }},
      {"deserialize", [&] { command.deserialize(in); }},
      {"wipeSecrets", [&] { command.wipeSecrets(); }},
      {"fitsOnWire", [&] { command.fitsOnWire(); }},
      {"clearConnections", [&] { command.init(6); }},
      {"getConnID", [&] { command.getConnID(); }},
      {"setConnID", [&] { command.setConnID(1); }},
      {"getConnections", [&] { command.connections(); }},
  };
  for (const auto& [operation, use] : uses) {
    EXPECT_DEATH(use(), "CommandProcessor: ClKeepAlive: " + operation + "\\(\\) after its release");
  }
  EXPECT_DEATH(command.checkValidAndThrow(), "");
#ifdef CP_ADDRESSES_CHECKED
  EXPECT_DEATH(std::exit(static_cast<int>(command.sequenceNumber())), "use-after-poison");
#endif
  while (&Pool::create() != &command) continue;
  EXPECT_EQ(command.sequenceNumber(), 5u) << "what is taken again is as any other";
  command.release();
}

#endif

TEST(Pool, HandsOutTheOldestAsItWasLeft) {
  Pool::clearCache();
  ClKeepAlive& first = Pool::create();
  ClKeepAlive& second = Pool::create();
  EXPECT_NE(&first, &second);
  first.init(7);
  first.setConnID(3);
  first.release();
  Pool::destroy(second);
  ASSERT_EQ(Pool::cashedCmds.tsSize(), 2u);
  ClKeepAlive& again = Pool::create();
  EXPECT_EQ(&again, &first) << "first in, first out";
  EXPECT_EQ(again.sequenceNumber(), 7u);
  EXPECT_EQ(again.getConnID(), ConnectionID(3));
  again.init(8);
  EXPECT_TRUE(again.getConnections().empty()) << "init must forget the last receivers";
  again.release();
}

TEST(Pool, CountsWhatItAllocatedAndNeverLess) {
  const auto counted = [] {
    for (const std::string& line : dump(*DebugStaticLogger::instance(), "test")) {
      const std::string head = "\t command type = SrvKeepAliveReply \t memory = ";
      if (line.rfind(head, 0) == 0) return line.substr(head.size());
    }
    return std::string("nothing");
  };
  const auto size = sizeof(SrvKeepAliveReply);
  SrvKeepAliveReply& first = CachedCmdCreator<SrvKeepAliveReply>::create();
  EXPECT_EQ(counted(), std::to_string(size) + " (1)");
  first.release();
  CachedCmdCreator<SrvKeepAliveReply>::create().release();
  EXPECT_EQ(counted(), std::to_string(size) + " (1)") << "an idle object was there to be reused";
  CachedCmdCreator<SrvKeepAliveReply>::clearCache();
  EXPECT_EQ(CachedCmdCreator<SrvKeepAliveReply>::cashedCmds.tsSize(), 0u);
  CachedCmdCreator<SrvKeepAliveReply>::create().release();
  EXPECT_EQ(counted(), std::to_string(2 * size) + " (2)");
}

// Wherever memory runs out, the objects are in the pool or in somebody's hands, and what was there stays as it was.
TEST(Pool, LosesNothingWhenMemoryRunsOut) {
  using Moved = CachedCmdCreator<ServiceNotAvailable>;
  const std::string server(100, 's');
  ServiceNotAvailable& source = Moved::create();
  source.init(server.c_str());
  for (std::int32_t id = 0; id < 40; ++id) source.setConnID(id);
  for (std::size_t allowed = 0;; ++allowed) {
    Moved::clearCache();
    PokerCommandI* copy = nullptr;
    try {
      const test::FailingAllocations failing(allowed);
      copy = source.clone();
    } catch (const std::bad_alloc&) {
      continue;  // the leak checker sees an object that nobody holds
    }
    EXPECT_EQ(static_cast<ServiceNotAvailable*>(copy)->newServer(), server);
    const test::FailingAllocations failing(0);
    copy->release();
    EXPECT_FALSE(failing.struck()) << "release must not need memory";
    break;
  }
  EXPECT_EQ(Moved::cashedCmds.tsSize(), 1u);
  EXPECT_EQ(source.newServer(), server);
  EXPECT_EQ(source.getConnections().size(), 40u);
  source.release();
}

TEST(MemoryDump, WritesItsLines) {
  DebugStaticLogger logger;
  std::string log;
  auto lines = dump(logger, nullptr, &log);
  EXPECT_EQ(log, "log");
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].rfind("DebugStaticLogger::dumpDataIntoLog : dump (threadID=", 0), 0u) << lines[0];
#ifdef __linux__
  char id[9];  // the thread's id has 32 bits
  std::snprintf(id, sizeof id, "%x", static_cast<unsigned>(gettid()));
  EXPECT_NE(lines[0].find(std::string("threadID=") + id + "): "), std::string::npos) << lines[0];
#endif
  EXPECT_EQ(lines[1], "\t <<< no data found >>>");

  DebugStaticLogger::DebugStaticLoggerData b{200, 2}, a{INT32_MAX - 4, INT32_MAX};
  a.add(4);
  EXPECT_EQ(a.count, INT32_MIN) << "32-bit counters wrap";
  a.add(1);
  EXPECT_EQ(a.bytes, INT32_MIN);
  a = {INT32_MAX, 1};
  logger.addSizeForType("Second", &b);
  logger.addSizeForType("First %s", &a);
  DebugStaticLogger copy(logger);
  lines = dump(copy, "other", &log);
  EXPECT_EQ(log, "other");
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[1], "\t command type = First %s \t memory = 2147483647 (1)");
  EXPECT_EQ(lines[2], "\t command type = Second \t memory = 200 (2)");
  EXPECT_EQ(lines[3], "Total: bytes = -2147483449 (3)") << "32-bit counters wrap";
}

}  // namespace
}  // namespace poker

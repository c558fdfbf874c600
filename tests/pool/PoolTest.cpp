#include <CommandProcessor/commands/session/ClKeepAlive.h>
#include <CommandProcessor/commands/session/ServiceNotAvailable.h>
#include <CommandProcessor/commands/session/SrvKeepAliveReply.h>
#include <CommandProcessor/pool/CachedCmdCreator.h>
#include <LogUtil/Log.h>
#include <tests/support/AllocationCounter.h>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

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
  EXPECT_EQ(lines[1], "\t <<< no data found >>>");

  DebugStaticLogger::DebugStaticLoggerData b{200, 2}, a{INT32_MAX, 1};
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

// Two threads take and give back; nobody ever holds an object that another one holds.
TEST(Pool, NeverHandsOneObjectToTwoThreads) {
  Pool::clearCache();
  auto work = [](std::uint32_t mine) {
    std::vector<ClKeepAlive*> held;
    for (std::uint32_t round = 0; round < 20000; ++round) {
      ClKeepAlive& command = Pool::create();
      command.init(mine + round);
      held.push_back(&command);
      if (held.size() < 8) continue;
      for (std::size_t i = 0; i < held.size(); ++i) {
        ASSERT_EQ(held[i]->sequenceNumber(), mine + round + 1 - held.size() + i);
        held[i]->release();
      }
      held.clear();
    }
    for (ClKeepAlive* command : held) command->release();
  };
  std::thread one(work, 1'000'000u), two(work, 2'000'000u);
  one.join();
  two.join();
  EXPECT_LE(Pool::cashedCmds.tsSize(), 16u);
  std::set<ClKeepAlive*> different;
  while (ClKeepAlive* command = Pool::cashedCmds.tsGet()) different.insert(command);
  EXPECT_LE(different.size(), 16u);
  for (ClKeepAlive* command : different) command->release();
}

}  // namespace
}  // namespace poker

#include <CommandProcessor/commands/session/SrvBusy.h>
#include <CommandProcessor/pool/CachedCmdCreator.h>
#include <LogUtil/Log.h>
#include <tests/support/AllocationCounter.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace poker::test {
namespace {

TEST(PoolMemory, EveryNewObjectIsOneAllocationAndGivingBackIsNone) {
  if (!AllocationCounter::counts()) GTEST_SKIP() << "allocations are not counted here";
  using Pool = CachedCmdCreator<SrvBusy>;
  constexpr std::size_t kMost = 40;
  std::vector<SrvBusy*> held;
  held.reserve(kMost);
  for (int round = 0; round < 4; ++round) {
    const AllocationCounter allocations;
    while (held.size() < kMost) held.push_back(&Pool::create());
    // In the first round the class is registered and the ring grows; it stays, and so does its size.
    if (round != 0) {
      EXPECT_EQ(allocations.calls(), kMost) << round;
    }
    const FailingAllocations failing(0);
    for (SrvBusy* command : held) command->release();
    EXPECT_FALSE(failing.struck());
    EXPECT_EQ(Pool::cashedCmds.tsSize(), kMost);
    held.clear();
    if (round % 2 == 0) {
      Pool::clearCache();
    } else {
      Pool::cashedCmds.tsClear();
    }
    EXPECT_TRUE(Pool::cashedCmds.tsEmpty());
  }
}

TEST(Queue, ACopyHasAnEventOnlyWhenTheOtherHasOne) {
  Queue<int*> plain(false), copy(plain);
  EXPECT_EQ(copy.getInEvent(), nullptr);
}

TEST(MemoryDump, AnAssignedRegisterTellsTheSame) {
  const DebugStaticLogger::DebugStaticLoggerData data{7, 1};
  DebugStaticLogger first, second;
  first.addSizeForType("Name", &data);
  second = first;
  second = *&second;
  std::vector<std::string> lines;
  Log::setSink([&](const LogRecord& record) { lines.emplace_back(record.message); });
  second.dumpDataIntoLog(nullptr);
  Log::setSink(nullptr);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[1], "\t command type = Name \t memory = 7 (1)");
}

}  // namespace
}  // namespace poker::test

#include <CommandProcessor/platform/CriticalSection.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace poker {
namespace {

extern CriticalSection lateSection;

struct LocksBeforeItsSectionIsBuilt {
  LocksBeforeItsSectionIsBuilt() {
    const std::scoped_lock outer(lateSection);
    const std::lock_guard inner(lateSection);
    worked = true;
  }
  bool worked = false;
} early;

constinit CriticalSection lateSection;

bool anotherThreadGetsIn(CriticalSection& section) {
  bool got = false;
  std::thread([&] {
    got = section.try_lock();
    if (got) section.unlock();
  }).join();
  return got;
}

TEST(CriticalSection, IsUsableFromAStaticConstructorBeforeItsOwn) {
  EXPECT_TRUE(early.worked);
  EXPECT_TRUE(anotherThreadGetsIn(lateSection));
}

TEST(CriticalSection, StaysHeldUntilTheLastReentryIsLeft) {
  CriticalSection section;
  section.lock();
  ASSERT_TRUE(section.try_lock());
  section.lock();
  for (int depth = 3; depth > 0; --depth) {
    EXPECT_FALSE(anotherThreadGetsIn(section)) << depth;
    section.unlock();
  }
  EXPECT_TRUE(anotherThreadGetsIn(section));
}

TEST(CriticalSection, LosesNoUpdateAndNoSleeperUnderContention) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 20'000;
  CriticalSection section;
  std::uint64_t sum = 0;  // plain on purpose
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < kRounds; ++i) {
        const std::lock_guard outer(section);
        const std::lock_guard inner(section);
        ++sum;
        // Now and then long enough for the others to give up spinning.
        if (i % 2'000 == 0) std::this_thread::sleep_for(std::chrono::microseconds(500));
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(sum, std::uint64_t{kThreads} * kRounds);
}

// The one who takes the section over may destroy it while unlock() is still on its way out.
TEST(CriticalSection, UnlockDoesNotTouchASectionThatItsNextHolderDestroys) {
  for (int round = 0; round < 300; ++round) {
    auto section = std::make_unique<CriticalSection>();
    CriticalSection& shared = *section;
    shared.lock();
    std::thread heir([owned = std::move(section)]() mutable {
      owned->lock();
      owned->unlock();
      owned.reset();
    });
    if (round % 2 == 0) std::this_thread::sleep_for(std::chrono::microseconds(200));
    shared.unlock();
    heir.join();
  }
}

}  // namespace
}  // namespace poker

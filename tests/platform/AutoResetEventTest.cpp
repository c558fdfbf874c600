#include <CommandProcessor/platform/AutoResetEvent.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

#ifndef _WIN32
#include <poll.h>
#include <signal.h>
#include <sys/time.h>
#include <unistd.h>
#endif

namespace poker {
namespace {

using std::chrono::milliseconds;

TEST(AutoResetEvent, WakesOnceForSeveralSets) {
  AutoResetEvent event;
  EXPECT_FALSE(event.tryWait());
  event.set();
  event.set();
  event.wait();
  EXPECT_FALSE(event.tryWait());
  EXPECT_FALSE(event.waitFor(milliseconds(20)));
  event.set();
  EXPECT_TRUE(event.waitFor(milliseconds::min()));
  EXPECT_FALSE(event.waitFor(milliseconds::min()));
}

TEST(AutoResetEvent, WaitsNeitherShorterThanAskedNorForeverAtTheLongestTimeout) {
  AutoResetEvent event;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(event.waitFor(milliseconds(30)));
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(30));

  std::thread setter([&] {
    std::this_thread::sleep_for(milliseconds(20));
    event.set();
  });
  EXPECT_TRUE(event.waitFor(milliseconds::max()));
  setter.join();
}

// Nothing but the event orders the two threads, and set() writes nothing here: its flag alone must publish the value.
TEST(AutoResetEvent, PublishesWhatPrecededASetThatFoundItSignalled) {
  for (int round = 1; round <= 100; ++round) {
    AutoResetEvent event;
    std::atomic<bool> done{false};
    int value = 0;
    event.set();
    std::thread setter([&] {
      value = round;
      event.set();
      done.store(true, std::memory_order_relaxed);
    });
    while (!done.load(std::memory_order_relaxed)) std::this_thread::yield();
    event.wait();
    EXPECT_EQ(value, round);
    setter.join();
  }
}

#ifndef _WIN32

AutoResetEvent* interruptedEvent = nullptr;

// A signal may strike between any two steps of a wait and sets the event there: no order of the steps escapes.
TEST(AutoResetEvent, LosesNoSetThatStrikesInTheMiddleOfAWait) {
  AutoResetEvent event;
  interruptedEvent = &event;
  struct sigaction action {};
  struct sigaction old {};
  action.sa_handler = [](int) { interruptedEvent->set(); };
  ASSERT_EQ(sigaction(SIGALRM, &action, &old), 0);
  const itimerval often{{0, 20}, {0, 20}};
  const itimerval never{};
  ASSERT_EQ(setitimer(ITIMER_REAL, &often, nullptr), 0);
  const auto end = std::chrono::steady_clock::now() + milliseconds(300);
  while (std::chrono::steady_clock::now() < end && !HasFailure()) {
    event.set();
    EXPECT_TRUE(event.tryWait()) << "the event is stuck";
  }
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &old, nullptr);
}

TEST(AutoResetEvent, SetWritesOnceUntilTheSignalIsTaken) {
  AutoResetEvent event;
  event.acknowledge();
  for (int round = 0; round < 3; ++round) {
    pollfd entry{event.native(), POLLIN, 0};
    EXPECT_EQ(poll(&entry, 1, 0), 0);
    for (int i = 0; i < 5; ++i) event.set();
    EXPECT_EQ(poll(&entry, 1, 0), 1);
    event.acknowledge();
  }
  for (int i = 0; i < 5; ++i) event.set();
  std::uint64_t writes = 0;
  ASSERT_EQ(read(event.native(), &writes, sizeof writes), ssize_t{sizeof writes});
  EXPECT_EQ(writes, 1u);
}

#endif

}  // namespace
}  // namespace poker

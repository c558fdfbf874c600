// Many threads at a queue and at pools: what goes in comes out, by count and by sum, and nobody is left asleep.
//
//   CP_STRESS_OPERATIONS=10000000   so many pushes and takes in each test (200,000 without it)

#include <CommandProcessor/commands/session/ClKeepAlive.h>
#include <CommandProcessor/commands/session/SrvMaintenance.h>
#include <CommandProcessor/pool/CachedCmdCreator.h>
#include <LogUtil/Log.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace poker {
namespace {

/// Producers push what they make, consumers sleep until there is something and take all there is, in rounds that end
/// with an empty queue: a wake-up that is lost leaves its item there for good.
class Traffic {
 public:
  static constexpr std::uint64_t kProducers = 3;
  static constexpr std::uint64_t kRound = 20'000;

  /// @param make       makes the item of a number
  /// @param take       gives its number back and ends it
  /// @param meanwhile  each over and over again in a thread of its own while there are producers
  template <class T>
  void run(Queue<T*>& queue, int consumers, const std::function<T*(std::uint64_t)>& make,
           const std::function<std::uint64_t(T*)>& take, const std::vector<std::function<void()>>& meanwhile) {
    const char* wanted = std::getenv("CP_STRESS_OPERATIONS");
    const std::uint64_t items = (wanted == nullptr ? 200'000 : std::strtoull(wanted, nullptr, 10)) / 2;
    const auto start = std::chrono::steady_clock::now();
    for (std::uint64_t first = 0; first < items; first += kRound) {
      round(queue, consumers, first, std::min(items, first + kRound), make, take, meanwhile);
      const std::uint64_t all = std::min(items, first + kRound);
      ASSERT_EQ(count.load(), all);
      ASSERT_EQ(sum.load(), all * (all - 1) / 2);
    }
    std::cout << 2 * items << " operations, "
              << std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() << " s\n";
  }

  /// An item has come out.
  void out(std::uint64_t number) {
    sum.fetch_add(number, std::memory_order_relaxed);
    count.fetch_add(1, std::memory_order_relaxed);
  }

 private:
  template <class T>
  void round(Queue<T*>& queue, int consumers, std::uint64_t first, std::uint64_t end,
             const std::function<T*(std::uint64_t)>& make, const std::function<std::uint64_t(T*)>& take,
             const std::vector<std::function<void()>>& meanwhile) {
    std::atomic<bool> producing{true}, done{false};
    std::vector<std::thread> producers, others, takers;
    for (std::uint64_t p = 0; p < kProducers; ++p) {
      producers.emplace_back([&, p] {
        for (std::uint64_t number = first + p; number < end; number += kProducers) {
          queue.tsPush(make(number));
          while (!queue.tsEmpty() && queue.tsSize() > 500) std::this_thread::yield();
        }
      });
    }
    for (int c = 0; c < consumers; ++c) {
      takers.emplace_back([&] {
        do {
          queue.getInEvent()->wait();
          while (T* item = queue.tsGet()) out(take(item));
        } while (!done);
        queue.getInEvent()->set();  // for the next one
      });
    }
    for (const auto& work : meanwhile) {
      others.emplace_back([&] {
        while (producing) work(), std::this_thread::yield();
      });
    }
    for (auto& producer : producers) producer.join();
    producing = false;
    for (auto& other : others) other.join();
    waitUntil(end);
    done = true;
    queue.getInEvent()->set();
    for (auto& taker : takers) taker.join();
  }

  void waitUntil(std::uint64_t all) const {
    using Clock = std::chrono::steady_clock;
    std::uint64_t before = count;
    auto since = Clock::now();
    while (count < all) {
      std::this_thread::sleep_for(std::chrono::microseconds(200));
      if (const std::uint64_t now = count; now != before) {
        before = now;
        since = Clock::now();
      } else if (Clock::now() - since > std::chrono::seconds(60)) {
        std::cerr << "a wake-up was lost: " << now << " of " << all << " items came out\n";
        std::abort();  // nobody could join those who sleep
      }
    }
  }

  std::atomic<std::uint64_t> count{0}, sum{0};
};

// With a queue that is copied and cleared meanwhile, and items that come back when they are cleared.
TEST(Stress, QueueConservesItems) {
  struct Item {
    Item(Traffic& traffic_, Queue<Item*>& queue_, std::uint64_t number_, bool again_)
        : traffic(traffic_), queue(queue_), number(number_), again(again_) {}
    ~Item() {
      if (taken) return;
      if (again) {
        queue.tsPush(new Item(traffic, queue, number, false));
      } else {
        traffic.out(number);
      }
    }
    Traffic& traffic;
    Queue<Item*>& queue;
    const std::uint64_t number;
    const bool again;
    bool taken = false;
  };
  Traffic traffic;
  Queue<Item*> queue(true), a(true), b(false);
  traffic.run<Item>(
      queue, 2, [&](std::uint64_t number) { return new Item(traffic, queue, number, number % 5 == 0); },
      [](Item* item) {
        const std::uint64_t number = item->number;
        item->taken = true;
        delete item;
        return number;
      },
      {
          [&] { a = b; },
          [&] { b = a; },
          [&] { b = queue; },
          [&] { EXPECT_LT(Queue<Item*>(queue).tsSize(), 2 * Traffic::kRound); },
          [&] {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
            queue.tsClear();
          },
      });
  EXPECT_TRUE(queue.tsEmpty());
}

// Objects go from one thread to another, and some of them as copies; the pools are emptied and reported meanwhile. An
// object in two hands would have a number that its text does not tell.
TEST(Stress, PoolsConserveObjects) {
  using Notices = CachedCmdCreator<SrvMaintenance>;
  const auto idOf = [](std::uint64_t number) { return static_cast<MaintainID>(number % 256); };
  const auto textOf = [](std::uint64_t number) {
    return "longer than what stands inside a string " + std::to_string(number);
  };
  Log::setSink([](const LogRecord&) {});
  Traffic traffic;
  Queue<PokerCommandI*> queue(true);
  std::array<std::uint64_t, Traffic::kProducers> next{0, 1, 2};
  std::uint64_t torn = 0, outOfOrder = 0;
  traffic.run<PokerCommandI>(
      queue, 1,
      [&](std::uint64_t number) -> PokerCommandI* {
        if (number % 2 == 0) {
          ClKeepAlive& request = CachedCmdCreator<ClKeepAlive>::create();
          request.init(static_cast<std::uint32_t>(number));
          return &request;
        }
        SrvMaintenance& notice = Notices::create();
        notice.init(textOf(number), idOf(number));
        notice.setConnID(static_cast<std::int32_t>(number));
        if (number % 3 != 0) return &notice;
        PokerCommandI* copy = notice.clone();
        notice.release();
        return copy;
      },
      [&](PokerCommandI* command) {
        std::uint64_t number = 0;
        if (const auto* notice = dynamic_cast<SrvMaintenance*>(command)) {
          number = static_cast<std::uint64_t>(notice->getConnID().value());
          torn += notice->getMessage() != textOf(number) || notice->getID() != idOf(number);
        } else {
          number = dynamic_cast<ClKeepAlive&>(*command).sequenceNumber();
        }
        command->release();
        // Each producer's own come in its order.
        std::uint64_t& expected = next[number % Traffic::kRound % Traffic::kProducers];
        outOfOrder += number < expected;
        expected = number;
        return number;
      },
      {
          [] {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
            Notices::clearCache();
            CachedCmdCreator<ClKeepAlive>::clearCache();
          },
          [] { DebugStaticLogger::instance()->dumpDataIntoLog("stress"); },
      });
  Log::setSink(nullptr);
  EXPECT_EQ(torn, 0u);
  EXPECT_EQ(outOfOrder, 0u);
  // All are idle: each once.
  std::set<SrvMaintenance*> different;
  std::uint32_t idle = 0;
  for (; SrvMaintenance* notice = Notices::cashedCmds.tsGet(); ++idle) different.insert(notice);
  EXPECT_EQ(different.size(), idle);
  for (SrvMaintenance* notice : different) notice->release();
  Notices::clearCache();
  EXPECT_EQ(Notices::cashedCmds.tsSize(), 0u);
}

}  // namespace
}  // namespace poker

// Two or three threads do up to four things each with a lock, an event or a queue, in an order that a seed draws at
// every step inside of them. In checking builds alone, which have the hooks for that.
//
//   CP_SCHEDULES=1000000   so many schedules for each of the five (20,000 without it)
//   CP_SCHEDULE_SEED=77    that one alone, with its course

#if defined(CP_CHECKING) && !defined(_WIN32)

#include <CommandProcessor/platform/AutoResetEvent.h>
#include <CommandProcessor/platform/CriticalSection.h>
#include <CommandProcessor/pool/Queue.h>
#include <tests/pool/Schedule.h>

#include <gtest/gtest.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace poker::test {
namespace {

// --- the worlds: what the threads share and may do with it. Each is a template over the thing under test, so that one
// with a planted fault can stand in its place.

/// What all worlds have in common.
struct World {
  explicit World(Schedule& schedule_) : schedule(schedule_) {}

  void fail(const std::string& what) {
    if (fault.empty()) fault = what;
  }
  /// Nobody can go on: a thread that sleeps for an event may do so, unless there is something for it.
  void judgeStandstill(const auto& maySleepAt) {
    for (const void* address : schedule.sleepers()) {
      if (!maySleepAt(address)) fail("a thread sleeps for good");
    }
  }

  Schedule& schedule;
  std::string fault;
  bool closed = false;  ///< nobody begins to wait any more
};

template <class Event>
bool readable(const Event& event) {
  pollfd entry{event.native(), POLLIN, 0};
  return poll(&entry, 1, 0) == 1;
}

/// Waits as a host's loop does that watches the descriptor by its own means.
template <class Event>
void watchAndAcknowledge(Event& event) {
  while (!readable(event)) scheduling::sleep(&event);
  event.acknowledge();
}

template <class Section>
struct LockWorld : World {
  static constexpr std::array kActions{"count", "count nested", "try to count", "lock both", "lock both"};
  using World::World;

  void act(std::size_t action) {
    if (action == 0) {
      const std::lock_guard guard(section);
      count();
    } else if (action == 1) {
      const std::lock_guard outer(section);
      const std::lock_guard inner(section);
      count();
    } else if (action == 2) {
      if (!section.try_lock()) return;
      count();
      section.unlock();
    } else {
      const std::scoped_lock guard(action == 3 ? section : other, action == 3 ? other : section);
      count();
    }
  }
  void count() {
    const int seen = counter;
    schedule.step();
    counter = seen + 1;
    ++expected;
  }
  void standstill() {
    judgeStandstill([](const void*) { return false; });
  }
  void close() {}
  void end() {
    if (counter != expected) fail("two threads were inside at once");
  }

  Section section, other;
  int counter = 0;
  int expected = 0;
};

template <class Event>
struct EventWorld : World {
  static constexpr std::array kActions{
      "set", "set", "set", "wait", "wait with timeout", "try", "watch and acknowledge"};
  using World::World;

  void act(std::size_t action) {
    if (action < 3) {
      const int begun = ++now;
      event.set();
      lastSet = std::max(lastSet, begun);
    } else if (action == 5) {
      if (event.tryWait()) lastTaken = ++now;
    } else if (!closed) {
      if (action == 3) event.wait();
      if (action == 4) event.waitFor(std::chrono::hours(1));
      if (action == 6) watchAndAcknowledge(event);
      lastTaken = ++now;
    }
  }
  // A set() that began after everybody who ever took the signal was done must be there still.
  void check() {
    if (lastSet > lastTaken && !event.tryWait()) fail("a set() was lost");
  }
  void standstill() {
    judgeStandstill([&](const void* address) { return address == &event && lastSet <= lastTaken; });
  }
  void close() { act(0); }
  void end() {
    check();
    event.tryWait();
    event.set();
    if (!event.tryWait()) fail("the event is stuck");
  }

  Event event;
  int now = 0, lastSet = 0, lastTaken = 0;
};

struct Numbered {
  int number = 0;
  int taken = 0;
};

/// Hands out items that live as long as the world.
template <class Q>
struct ItemWorld : World {
  using World::World;

  void push(Q& queue) {
    Numbered& item = items[pushed];
    item.number = static_cast<int>(pushed++);
    queue.tsPush(&item);
  }
  static void drain(Q& queue) {
    while (Numbered* item = queue.tsGet()) ++item->taken;
  }

  std::array<Numbered, 64> items{};
  std::size_t pushed = 0;
};

template <class Q>
struct QueueWorld : ItemWorld<Q> {
  static constexpr std::array kActions{"push", "push", "get", "wait and drain", "watch, acknowledge and drain"};
  using ItemWorld<Q>::ItemWorld;

  void act(std::size_t action) {
    if (action < 2) {
      this->push(queue);
    } else if (action == 2) {
      if (Numbered* item = queue.tsGet()) ++item->taken;
    } else if (!this->closed) {
      if (action == 3) queue.getInEvent()->wait();
      if (action == 4) watchAndAcknowledge(*queue.getInEvent());
      this->drain(queue);
    }
  }
  void standstill() {
    this->judgeStandstill([&](const void* address) { return address == event && queue.tsEmpty(); });
  }
  void close() { event->set(); }
  void end() {
    this->drain(queue);
    for (std::size_t i = 0; i < this->pushed; ++i) {
      if (this->items[i].taken != 1) this->fail("an item came out " + std::to_string(this->items[i].taken) + " times");
    }
  }

  Q queue{true};
  AutoResetEvent* const event = queue.getInEvent();
};

template <class Q>
struct CopyWorld : ItemWorld<Q> {
  static constexpr std::array kActions{"push a",      "push b",           "a = b",           "b = a", "get a",
                                       "copy from a", "wait and drain a", "wait and drain b"};

  explicit CopyWorld(Schedule& schedule_) : ItemWorld<Q>(schedule_) {
    if (schedule_.below(4) != 0) return;
    for (int i = 0; i < 15; ++i) this->push(a);  // the ring is about to grow
  }

  void act(std::size_t action) {
    Q& queue = action == 1 || action == 3 || action == 7 ? b : a;
    if (action < 2) {
      this->push(queue);
    } else if (action < 4) {
      queue = &queue == &a ? b : a;
    } else if (action == 4) {
      queue.tsGet();
    } else if (action == 5) {
      Q copy(queue);
      if (copy.getInEvent()->tryWait() == copy.tsEmpty()) this->fail("the event of a copy is wrong");
      look(copy);
    } else if (!this->closed) {
      queue.getInEvent()->wait();
      this->drain(queue);
    }
  }
  void look(Q& queue) {
    std::set<const Numbered*> different;
    const std::uint32_t size = queue.tsSize();
    for (std::uint32_t i = 0; i < size; ++i) {
      const Numbered* item = queue.tsGet();
      if (item == nullptr || !different.insert(item).second) this->fail("a copy is torn");
    }
    if (queue.tsGet() != nullptr) this->fail("a copy is longer than it says");
  }
  void standstill() {
    this->judgeStandstill([&](const void* address) {
      return (address == eventOfA && a.tsEmpty()) || (address == eventOfB && b.tsEmpty());
    });
  }
  void close() {
    eventOfA->set();
    eventOfB->set();
  }
  void end() {
    look(a);
    look(b);
  }

  Q a{true}, b{true};
  AutoResetEvent* const eventOfA = a.getInEvent();
  AutoResetEvent* const eventOfB = b.getInEvent();
};

/// Items whose end may put another one into the queue.
template <template <class> class Q>
struct ClearWorld : World {
  static constexpr std::array kActions{"push", "push one that comes back", "clear", "get and delete", "wait and drain"};

  struct Item {
    Item(ClearWorld& world_, bool again_) : world(world_), again(again_) { ++world.alive; }
    ~Item() {
      if (std::exchange(ended, true)) world.fail("an item was deleted twice");
      --world.alive;
      if (again) world.push(false);
    }
    static void operator delete(void*) {}  // its place stays the world's
    ClearWorld& world;
    const bool again;
    bool ended = false;
  };
  using World::World;

  void push(bool again) { queue.tsPush(std::construct_at(&places[used++].item, *this, again)); }
  void act(std::size_t action) {
    if (action < 2) {
      push(action == 1);
    } else if (action == 2) {
      queue.tsClear();
    } else if (action == 3) {
      delete queue.tsGet();
    } else if (!closed) {
      queue.getInEvent()->wait();
      while (Item* item = queue.tsGet()) delete item;
    }
  }
  void standstill() {
    judgeStandstill([&](const void* address) { return address == event && queue.tsEmpty(); });
  }
  void close() { event->set(); }
  void end() {
    queue.tsClear();
    if (alive != 0) fail(std::to_string(alive) + " items are left");
  }

  union Place {
    Place() {}
    ~Place() {}
    Item item;
  };
  std::array<Place, 32> places;
  std::size_t used = 0;
  int alive = 0;
  Q<Item*> queue{true};
  AutoResetEvent* const event = queue.getInEvent();
};

// --- running them

/// @return what went wrong; empty when nothing did
template <class W>
std::string runSchedule(std::uint64_t seed, std::string* course = nullptr) {
  Schedule schedule(seed, course);
  W world(schedule);
  const std::size_t threads = 2 + schedule.below(Schedule::kMostThreads - 1);
  for (std::size_t i = 0; i < threads; ++i) {
    schedule.add([&world] {
      for (std::uint32_t left = 1 + world.schedule.below(4); left > 0; --left) {
        const std::uint32_t action = world.schedule.below(static_cast<std::uint32_t>(W::kActions.size()));
        world.schedule.note(W::kActions[action]);
        world.act(action);
        world.schedule.step();
      }
    });
  }
  while (!schedule.run() && world.fault.empty()) {
    world.standstill();
    world.closed = true;
    world.schedule.note("close");
    world.close();
  }
  if (world.fault.empty()) {
    schedule.add([&world] { world.end(); });
    if (!schedule.run()) world.standstill();
  }
  return world.fault;
}

struct Finding {
  std::uint64_t seed = 0;
  std::string fault;  ///< empty: none in all schedules
};

template <class W>
Finding search(std::uint64_t schedules) {
  for (std::uint64_t seed = 1; seed <= schedules; ++seed) {
    if (std::string fault = runSchedule<W>(seed); !fault.empty()) return {seed, fault};
  }
  return {};
}

std::uint64_t numberFrom(const char* variable, std::uint64_t otherwise) {
  const char* text = std::getenv(variable);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

template <class W>
void expectNoFault(const char* test) {
  if (const std::uint64_t seed = numberFrom("CP_SCHEDULE_SEED", 0); seed != 0) {
    std::string course;
    EXPECT_EQ(runSchedule<W>(seed, &course), "");
    std::cout << course << '\n';
    return;
  }
  const std::uint64_t schedules = numberFrom("CP_SCHEDULES", 20'000);
  const auto start = std::chrono::steady_clock::now();
  const Finding finding = search<W>(schedules);
  std::string course;
  if (!finding.fault.empty()) runSchedule<W>(finding.seed, &course);
  EXPECT_EQ(finding.fault, "") << "schedule " << finding.seed << ": " << course
                               << "\nagain: CP_SCHEDULE_SEED=" << finding.seed << " test_pool --gtest_filter=Schedules."
                               << test;
  std::cout << schedules << " schedules, "
            << std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() << " s\n";
}

TEST(Schedules, OfALockExcludeAndEnd) { expectNoFault<LockWorld<CriticalSection>>("OfALockExcludeAndEnd"); }
TEST(Schedules, OfAnEventLoseNoSet) { expectNoFault<EventWorld<AutoResetEvent>>("OfAnEventLoseNoSet"); }
TEST(Schedules, OfAQueueLoseNoItem) { expectNoFault<QueueWorld<Queue<Numbered*>>>("OfAQueueLoseNoItem"); }
TEST(Schedules, OfCopiesTearNothing) { expectNoFault<CopyWorld<Queue<Numbered*>>>("OfCopiesTearNothing"); }
TEST(Schedules, OfClearingLeaveNothing) { expectNoFault<ClearWorld<Queue>>("OfClearingLeaveNothing"); }

// --- planted faults, each of them one that was made before in such code: all are found, and come out the same again

/// Who slept takes the section as if nobody else slept: the second sleeper is never woken.
class ForgetsTheSecondSleeper {
 public:
  void lock() {
    while (!try_lock()) {
      waited_ = true;
      scheduling::sleep(&held_);
    }
  }
  bool try_lock() {
    scheduling::step();
    if (held_ && owner_ != scheduling::self()) return false;
    owner_ = scheduling::self();
    held_ = true;
    ++depth_;
    return true;
  }
  void unlock() {
    scheduling::step();
    if (--depth_ != 0) return;
    held_ = false;
    if (std::exchange(waited_, false)) scheduling::wake(&held_, false);
  }

 private:
  bool held_ = false, waited_ = false;
  int depth_ = 0;
  pthread_t owner_{};
};

/// Does not look whether it is held between finding it free and taking it.
class TakesWithoutLooking {
 public:
  void lock() {
    while (!try_lock()) scheduling::step();
  }
  bool try_lock() {
    if (depth_ != 0 && owner_ != scheduling::self()) return false;
    scheduling::step();
    owner_ = scheduling::self();
    ++depth_;
    return true;
  }
  void unlock() { --depth_; }

 private:
  int depth_ = 0;
  pthread_t owner_{};
};

/// Takes the flag down before the descriptor: a set() in between is swallowed, and no later one writes.
class SwallowsASet {
 public:
  void set() {
    scheduling::step();
    if (std::exchange(signalled_, true)) return;
    scheduling::step();
    readable_ = true;
    scheduling::wake(this, true);
  }
  bool tryWait() { return signalled_ && take(); }
  void wait() {
    do {
      if (!readable_) scheduling::sleep(this);
    } while (!take());
  }
  bool waitFor(std::chrono::hours) { return wait(), true; }
  void acknowledge() { take(); }
  friend bool readable(const SwallowsASet& event) { return event.readable_; }

 private:
  bool take() {
    scheduling::step();
    signalled_ = false;
    scheduling::step();
    return std::exchange(readable_, false);
  }
  bool signalled_ = false, readable_ = false;
};

/// Sets the event before the item is there.
struct SetsTooEarly : Queue<Numbered*> {
  using Queue::Queue;
  void tsPush(Numbered* item) {
    getInEvent()->set();
    inner.tsPush(item);
  }
  Numbered* tsGet() { return inner.tsGet(); }
  bool tsEmpty() const { return inner.tsEmpty(); }
  Queue<Numbered*> inner{false};
};

/// Says nothing when there were items already.
struct SetsForTheFirstAlone : SetsTooEarly {
  using SetsTooEarly::SetsTooEarly;
  void tsPush(Numbered* item) {
    const bool first = inner.tsEmpty();
    scheduling::step();
    inner.tsPush(item);
    if (first) getInEvent()->set();
  }
};

/// Locks itself first and the other one then, whichever way round they stand.
struct LocksInAnyOrder : Queue<Numbered*> {
  using Queue::Queue;
  LocksInAnyOrder(const LocksInAnyOrder& other) : Queue(other) {}
  LocksInAnyOrder& operator=(const LocksInAnyOrder& other) {
    const std::lock_guard mine(lock());
    const std::lock_guard theirs(other.lock());
    Queue::operator=(other);
    return *this;
  }
};

/// Copies the items and tells nobody.
struct CopiesInSilence : Queue<Numbered*> {
  using Queue::Queue;
  CopiesInSilence(const CopiesInSilence& other) : Queue(other) {}
  CopiesInSilence& operator=(const CopiesInSilence& other) {
    const bool signalled = getInEvent()->tryWait();
    Queue::operator=(other);
    getInEvent()->tryWait();
    if (signalled) getInEvent()->set();
    return *this;
  }
};

/// Deletes under a lock that is not recursive.
template <class T>
struct ClearsUnderAPlainLock : Queue<T> {
  using Queue<T>::Queue;
  void tsPush(T item) {
    enter();
    Queue<T>::tsPush(item);
    leave();
  }
  void tsClear() {
    enter();
    Queue<T>::tsClear();
    leave();
  }
  void enter() {
    while (std::exchange(held, true)) scheduling::sleep(&held);
  }
  void leave() {
    held = false;
    scheduling::wake(&held, true);
  }
  bool held = false;
};

struct Planted {
  const char* name;
  Finding (*search)(std::uint64_t);
  std::string (*run)(std::uint64_t, std::string*);
};
template <class W>
Planted plant(const char* name) {
  return {name, search<W>, runSchedule<W>};
}

TEST(Schedules, FindEveryPlantedFault) {
  const Planted planted[] = {
      plant<LockWorld<ForgetsTheSecondSleeper>>("forgets the second sleeper"),
      plant<LockWorld<TakesWithoutLooking>>("takes without looking"),
      plant<EventWorld<SwallowsASet>>("swallows a set"),
      plant<QueueWorld<SetsTooEarly>>("sets too early"),
      plant<QueueWorld<SetsForTheFirstAlone>>("sets for the first alone"),
      plant<CopyWorld<LocksInAnyOrder>>("locks in any order"),
      plant<CopyWorld<CopiesInSilence>>("copies in silence"),
      plant<ClearWorld<ClearsUnderAPlainLock>>("clears under a plain lock"),
  };
  for (const Planted& one : planted) {
    SCOPED_TRACE(one.name);
    const Finding finding = one.search(20'000);
    ASSERT_NE(finding.fault, "") << "not found";
    std::string course, again;
    EXPECT_EQ(one.run(finding.seed, &course), finding.fault);
    one.run(finding.seed, &again);
    EXPECT_EQ(course, again);
    EXPECT_NE(course, "");
    std::cout << one.name << ": schedule " << finding.seed << ": " << finding.fault << " (" << course << ")\n";
  }
}

}  // namespace
}  // namespace poker::test

#endif

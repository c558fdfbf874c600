#include <CommandProcessor/pool/Queue.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <vector>

namespace poker {
namespace {

struct Item {
  explicit Item(int n = 0) : number(n) { ++alive; }
  virtual ~Item() { --alive; }
  int number;
  static inline std::atomic<int> alive = 0;
};

TEST(Queue, KeepsOrderAcrossWrapAndGrowth) {
  Queue<Item*> queue(false);
  EXPECT_EQ(queue.getInEvent(), nullptr);
  EXPECT_EQ(queue.tsGet(), nullptr);
  std::vector<std::unique_ptr<Item>> items;
  int put = 0, got = 0;
  // Sawtooth: the ring wraps at every fill level and grows while its head is not at its start.
  for (int round = 1; round < 60; ++round) {
    for (int i = 0; i < round; ++i) {
      items.push_back(std::make_unique<Item>(put++));
      queue.tsPush(items.back().get());
    }
    for (int i = 0; i < round - 1; ++i) ASSERT_EQ(queue.tsGet()->number, got++);
    ASSERT_EQ(queue.tsSize(), static_cast<unsigned>(put - got));
  }
  while (Item* item = queue.tsGet()) ASSERT_EQ(item->number, got++);
  EXPECT_EQ(got, put);
  EXPECT_TRUE(queue.tsEmpty());
}

TEST(Queue, SignalsOnceForSeveralPushes) {
  Queue<Item*> queue(true);
  Item a(1), b(2);
  queue.tsPush(&a);
  queue.tsPush(&b);
  AutoResetEvent* event = queue.getInEvent();
  ASSERT_TRUE(event->tryWait());
  EXPECT_FALSE(event->tryWait());
  EXPECT_EQ(queue.tsGet(), &a);
  EXPECT_EQ(queue.tsGet(), &b);
  EXPECT_EQ(queue.tsGet(), nullptr);
  queue.tsPush(&a);
  EXPECT_TRUE(event->tryWait()) << "the event must be set again after a drain";
  queue.tsGet();
}

TEST(Queue, ClearDeletesAndDestructionDoesNot) {
  Item::alive = 0;
  Item* survivor = new Item;
  {
    Queue<Item*> queue(false);
    for (int i = 0; i < 20; ++i) queue.tsPush(i == 7 ? nullptr : new Item);
    queue.tsClear();
    EXPECT_EQ(Item::alive, 1);
    EXPECT_TRUE(queue.tsEmpty());
    queue.tsPush(survivor);
  }
  EXPECT_EQ(Item::alive, 1);
  delete survivor;
}

// An object that goes away may put another one back into the queue that is being cleared.
TEST(Queue, ClearSurvivesADestructorThatPushes) {
  struct PushesBack : Item {
    explicit PushesBack(Queue<Item*>& q) : queue(q) {}
    ~PushesBack() override { queue.tsPush(new Item); }
    Queue<Item*>& queue;
  };
  Item::alive = 0;
  Queue<Item*> queue(false);
  queue.tsPush(new PushesBack(queue));
  queue.tsClear();
  EXPECT_EQ(Item::alive, 0);
}

TEST(Queue, CopyHasItsOwnLockAndEvent) {
  Item a(1), b(2);
  Queue<Item*> queue(true);
  for (int i = 0; i < 20; ++i) queue.tsPush(&a), queue.tsGet();
  queue.tsPush(&a);
  queue.tsPush(&b);
  Queue<Item*> copy(queue);
  ASSERT_NE(copy.getInEvent(), nullptr);
  EXPECT_NE(copy.getInEvent(), queue.getInEvent());
  EXPECT_TRUE(copy.getInEvent()->tryWait()) << "a copy with items must wake its consumer";
  EXPECT_EQ(copy.tsGet(), &a);
  EXPECT_EQ(copy.tsGet(), &b);
  EXPECT_EQ(queue.tsSize(), 2u);

  Queue<Item*> other(false);
  other.tsPush(&b);
  queue = other;
  queue = *&queue;
  EXPECT_EQ(queue.tsSize(), 1u);
  EXPECT_EQ(queue.tsGet(), &b);
  Queue<Item*> empty(true);
  Queue<Item*> copyOfEmpty(empty);
  EXPECT_FALSE(copyOfEmpty.getInEvent()->tryWait());
}

}  // namespace
}  // namespace poker

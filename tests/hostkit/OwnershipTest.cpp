#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <gtest/gtest.h>
#include <hostkit/ConnectionTable.h>
#include <hostkit/QueueReader.h>
#include <hostkit/Results.h>
#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include <chrono>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

#include "HostKitUse.h"

#include <tests/support/AllocationCounter.h>

namespace poker::test {
namespace {

TEST(CommandHandle, ReleasesExactlyOnceHoweverItIsMoved) {
  CommandHandle<SrvMaintenance>::create().reset();
  const std::uint32_t before = idle<SrvMaintenance>();
  {
    CommandHandle<SrvMaintenance> first = make<SrvMaintenance>("text", MaintainID{1});
    CommandHandle<> root = std::move(first);
    EXPECT_FALSE(first);
    EXPECT_EQ(idle<SrvMaintenance>(), before - 1);
    CommandHandle<> other = make<SrvBusy>();
    other = std::move(root);
    CommandHandle<>& same = other;
    other = std::move(same);
    EXPECT_TRUE(other);
    PokerCommandI* bare = other.detach();
    EXPECT_FALSE(other);
    CommandHandle<> back(*bare);
    back.reset();
    back.reset();
    EXPECT_EQ(idle<SrvMaintenance>(), before);
  }
  EXPECT_EQ(idle<SrvMaintenance>(), before);
}

TEST(CommandHandle, WipesBeforeTheObjectIsBackInThePool) {
  static std::vector<std::uint32_t> idleAtWipe;
  idleAtWipe.clear();
  CommandHandle<>::Wipe wipe = [](PokerCommandI&) { idleAtWipe.push_back(idle<SrvForward>()); };
  CommandHandle<SrvForward>::create().reset();
  const std::uint32_t before = idle<SrvForward>();
  {
    CommandHandle<SrvForward> command = make<SrvForward>();
    command.wipeBeforeRelease(wipe);
    const CommandHandle<> moved = std::move(command);
  }
  EXPECT_EQ(idleAtWipe, std::vector<std::uint32_t>{before - 1});
}

struct Answers final : ClientCmdProcessor {
  std::vector<std::pair<std::size_t, std::int32_t>> sent;  // bytes, id; -1 for an unaddressed one
  Results results;
  SerializeCommandBuf buffer{64};
  bool failAfterAdding = false;
  std::size_t failAtSend = 100;

  bool processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) override {
    ResultsGuard guard(results);
    command.process(results, *this);
    guard.send(
        buffer,
        [&](const EncodedCommand& reply, const ConnectionID& to) {
          if (sent.size() == failAtSend) throw std::runtime_error("connection lost");
          sent.emplace_back(reply.frame.size(), to.value());
        },
        [&](const EncodedCommand& reply) { sent.emplace_back(reply.frame.size(), -1); });
    return true;
  }
  void onClPing(Results& out, ClPing& request) override {
    addReply(out, request, make<SrvPing>(std::int32_t{0}));
    CommandHandle<SrvBusy> toAll = make<SrvBusy>();
    out.add(*toAll);
    toAll.detach();
    CommandHandle<SrvMaintenance> toThree = make<SrvMaintenance>("x", MaintainID{0});
    for (const std::int32_t id : {9, 7, 8}) toThree->setConnID(id);
    out.add(*toThree);
    out.add(*toThree.detach());  // a handler's mistake: still released once
    if (failAfterAdding) throw std::runtime_error("handler failed");
  }
};

TEST(ResultsGuard, SendsToEachConnectionAndReleasesOnceAlsoWhenSomethingThrows) {
  Answers host;
  CmdDispatcher dispatcher;
  dispatcher.registerClientCmdProcessor(host);
  CommandHandle<ClPing> request = make<ClPing>();
  request->setConnID(5);
  EXPECT_TRUE(dispatcher.dispatchCommand(*request));
  using Sent = std::vector<std::pair<std::size_t, std::int32_t>>;
  EXPECT_EQ(host.sent, (Sent{{7, 5}, {9, 7}, {9, 8}, {9, 9}, {9, 7}, {9, 8}, {9, 9}, {6, -1}}));

  const auto pools = [] { return std::vector{idle<SrvPing>(), idle<SrvBusy>(), idle<SrvMaintenance>()}; };
  const auto before = pools();
  host.failAfterAdding = true;
  EXPECT_THROW(dispatcher.dispatchCommand(*request), std::runtime_error);
  EXPECT_EQ(pools(), before);
  EXPECT_TRUE(host.results.empty());
  host.failAfterAdding = false;
  for (host.failAtSend = 0; host.failAtSend < 6; ++host.failAtSend) {
    host.sent.clear();
    EXPECT_THROW(dispatcher.dispatchCommand(*request), std::runtime_error);
    EXPECT_EQ(pools(), before) << host.failAtSend;
    EXPECT_TRUE(host.results.empty());
  }
}

// Idle objects, each of which must be in the pool once.
template <class T>
void expectEachOnce() {
  std::set<T*> different;
  std::uint32_t all = 0;
  for (; T* object = CachedCmdCreator<T>::cashedCmds.tsGet(); ++all) different.insert(object);
  EXPECT_EQ(different.size(), all);
  for (T* object : different) object->release();
}

// In the handler, between a reply's making and its adding, in the encoding: a leak checker sees what is lost, the pools
// show what is released twice.
TEST(ResultsGuard, ReleasesOnceWhereverMemoryRunsOut) {
  CommandHandle<ClPing> request = make<ClPing>();
  request->setConnID(5);
  for (std::size_t allowed = 0;; ++allowed) {
    Answers host;
    CmdDispatcher dispatcher;
    dispatcher.registerClientCmdProcessor(host);
    CachedCmdCreator<SrvPing>::clearCache();
    CachedCmdCreator<SrvBusy>::clearCache();
    CachedCmdCreator<SrvMaintenance>::clearCache();
    bool struck = false;
    try {
      const FailingAllocations failing(allowed);
      dispatcher.dispatchCommand(*request);
      struck = failing.struck();
    } catch (const std::bad_alloc&) {
      struck = true;
    }
    EXPECT_TRUE(host.results.empty());
    expectEachOnce<SrvPing>();
    expectEachOnce<SrvBusy>();
    expectEachOnce<SrvMaintenance>();
    if (!struck) break;
  }
}

TEST(ConnectionTable, NeverGivesAnIdTwice) {
  ConnectionTable<int> first;
  ConnectionTable<int> second;
  std::set<std::int32_t> seen;
  for (int i = 0; i < 500; ++i) {
    for (ConnectionTable<int>* table : {&first, &second}) {
      const ConnectionID id = table->add(i);
      ASSERT_GT(id.value(), 0);
      EXPECT_TRUE(seen.insert(id.value()).second);
      EXPECT_EQ((table == &first ? second : first).find(id), nullptr);
      EXPECT_TRUE(i % 2 != 0 || table->remove(id));
      EXPECT_EQ(table->find(id) != nullptr, i % 2 != 0);
      EXPECT_EQ(table->remove(id), i % 2 != 0);
    }
  }
  EXPECT_EQ(first.find(ConnectionID()), nullptr);
  EXPECT_GT(connectionIDsLeft(), 2'000'000'000u);
}

TEST(ConnectionTable, SurvivesEveryChangeWhileItIsWalked) {
  ConnectionTable<std::shared_ptr<int>> table;
  std::vector<ConnectionID> ids;
  for (int i = 0; i < 10; ++i) ids.push_back(table.add(std::make_shared<int>(i)));
  std::vector<int> seen;
  table.forEach([&](const ConnectionID& id, std::shared_ptr<int>& value) {
    seen.push_back(*value);
    table.add(std::make_shared<int>(1000));  // not visited in this walk
    table.remove(id);                        // the present one, whose value stays readable
    if (*value == 2) table.remove(ids[3]);   // one whose turn would be next
    if (*value == 4) table.remove(ids[0]);   // one that is gone already
    if (*value == 5) table.forEach([&](const ConnectionID& other, auto&) { table.remove(other); });
    EXPECT_NE(value, nullptr);
  });
  EXPECT_EQ(seen, (std::vector{0, 1, 2, 4, 5}));
  EXPECT_TRUE(table.empty());
}

TEST(ConnectionOf, AStaleConnectionDoesNotUnseatANewerOne) {
  ConnectionOf<std::string> speaker;
  EXPECT_FALSE(speaker.bind("ann", 10).isValid());
  EXPECT_EQ(speaker.bind("ann", 20).value(), 10);
  EXPECT_FALSE(speaker.unbind("ann", 10)) << "the end of the old connection comes late";
  EXPECT_EQ(speaker.find("ann").value(), 20);
  EXPECT_FALSE(speaker.bind("ann", 15).isValid()) << "an older connection's logon comes late";
  EXPECT_EQ(speaker.find("ann").value(), 20);
  EXPECT_TRUE(speaker.unbind("ann", 20));
  EXPECT_FALSE(speaker.find("ann").isValid());
}

TEST(QueueReader, HandsOverEachCommandOnceAndInOrderFromAnotherThread) {
  constexpr std::uint32_t kCommands = 5000;
  Queue<PokerCommandI*> queue(true);
  queue.tsPush(make<SrvKeepAliveReply>(0u).detach());  // before there is a reader
  asio::io_context context;
  std::uint32_t next = 0;
  std::unique_ptr<QueueReader> reader;
  reader = std::make_unique<QueueReader>(context, queue, [&](CommandHandle<> command) {
    EXPECT_EQ(dynamic_cast<SrvKeepAliveReply&>(*command).sequenceNumber(), next);
    if (++next == kCommands) reader.reset();  // ends the loop, from inside the handler
  });
  std::thread producer([&] {
    for (std::uint32_t i = 1; i < kCommands; ++i) {
      queue.tsPush(make<SrvKeepAliveReply>(i).detach());
      if (i % 100 == 0) std::this_thread::yield();
    }
  });
  context.run_for(std::chrono::seconds(20));
  producer.join();
  EXPECT_EQ(next, kCommands);
  EXPECT_TRUE(queue.tsEmpty());
}

TEST(QueueReader, KeepsWhatIsQueuedWhenItsHandlerThrowsOrItStops) {
  Queue<PokerCommandI*> queue(true);
  asio::io_context context;
  int handed = 0;
  QueueReader reader(context, queue, [&](CommandHandle<>) {
    if (++handed == 2) throw std::runtime_error("handler failed");
    if (handed == 3) reader.stop();
  });
  for (std::uint32_t i = 0; i < 4; ++i) queue.tsPush(make<SrvKeepAliveReply>(i).detach());
  EXPECT_THROW(context.run_for(std::chrono::seconds(5)), std::runtime_error);
  EXPECT_EQ(handed, 2);
  context.run_for(std::chrono::seconds(5));
  EXPECT_EQ(handed, 3);
  EXPECT_EQ(queue.tsSize(), 1u);
  CommandHandle<> left(*queue.tsGet());
  Queue<PokerCommandI*> mute(false);
  EXPECT_THROW(QueueReader(context, mute, {}), std::invalid_argument);
}

}  // namespace
}  // namespace poker::test

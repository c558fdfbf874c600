#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/ClientMiscCmdProcessor.h>
#include <CommandProcessor/core/ClientTourCmdProcessor.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <CommandProcessor/core/CommandsResult.h>
#include <CommandProcessor/core/DisptachException.h>
#include <CommandProcessor/core/PokerCommandTmpl.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <CommandProcessor/core/SrvMiscCmdProcessor.h>
#include <CommandProcessor/core/SrvTourCmdProcessor.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <iterator>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <vector>

#ifdef CP_HAS_RAPIDCHECK
#include <rapidcheck.h>
#endif

namespace poker {
namespace {

/// A command of any family that counts how often it was processed; it has no pool and no fields.
template <class ProcessorType>
class Probe : public PokerCommandTmpl<ProcessorType> {
 public:
  using Base = PokerCommandTmpl<ProcessorType>;
  Probe() : Base(static_cast<typename Base::TypeCode>(34)) {}
  void serialize(SerializeCommandBuf&) const override {}
  void deserialize(DeserializeCommandBuf&) override {}
  void process(typename Base::Results&, typename Base::Processor&) override { ++processed; }
  int processed = 0;
};

std::set<std::int32_t> idsOf(PokerCommandI& command) {
  std::set<std::int32_t> ids;
  for (const ConnectionID& id : command.getConnections()) ids.insert(id.value());
  return ids;
}

TEST(Command, AccumulatesConnections) {
  Probe<SrvCmdProcessorType> command;
  EXPECT_TRUE(command.getConnections().empty());
  EXPECT_EQ(command.getConnID(), ConnectionID(-1));
  EXPECT_FALSE(command.getConnID().isValid());
  command.setConnID(5);
  command.setConnID(3);
  command.setConnID(5);
  EXPECT_EQ(idsOf(command), (std::set<std::int32_t>{3, 5}));
  EXPECT_EQ(command.getConnID(), ConnectionID(3));
  command.setConnID(-1);
  EXPECT_EQ(command.getConnID(), ConnectionID(-1)) << "-1 is stored as an ordinary id";
  EXPECT_EQ(command.getConnections().size(), 3u);
  command.removeConnection(3);
  command.removeConnection(77);
  EXPECT_EQ(idsOf(command), (std::set<std::int32_t>{-1, 5}));

  Probe<SrvCmdProcessorType> copy(command);
  EXPECT_EQ(copy.getConnections(), command.getConnections());
  copy = *&copy;
  EXPECT_EQ(copy.getConnections(), command.getConnections());
  Probe<SrvCmdProcessorType> other;
  other.setConnID(100);
  other.addConnections(copy.getConnections());
  EXPECT_EQ(idsOf(other), (std::set<std::int32_t>{-1, 5, 100}));
  other = copy;
  EXPECT_EQ(idsOf(other), (std::set<std::int32_t>{-1, 5}));
  other.init();
  EXPECT_TRUE(other.getConnections().empty());
}

TEST(Command, DefaultsOfTheHooks) {
  Probe<SrvCmdProcessorType> command;
  EXPECT_TRUE(command.canCompress());
  EXPECT_FALSE(command.isFinalCommand());
  EXPECT_EQ(command.getTypeCode(), 34u);
  EXPECT_EQ(command.clone(), nullptr);
  command.release();
  EXPECT_EQ(command.checkValidAndThrow(), 0x0FFCE0FF);
}

// The sanitizers look at a dead object's type before it gets a chance to fault, and handle the fault themselves.
__attribute__((no_sanitize("undefined"))) void useDead(PokerCommandI* command) {
  std::signal(SIGFPE, SIG_DFL);
  command->checkValidAndThrow();
}

// The library's optimizer must leave the destructor's last store alone, whichever base's destructor it stands in, and a
// processor that does not trap at a division by zero must fault all the same.
template <class ProcessorType>
void faultsWhenDead() {
  alignas(Probe<ProcessorType>) static unsigned char place[sizeof(Probe<ProcessorType>)];
  auto* command = new (place) Probe<ProcessorType>;
  auto* const root = static_cast<PokerCommandI*>(command);
  EXPECT_EQ(root->checkValidAndThrow(), 0x0FFCE0FF);
  std::destroy_at(command);
#ifdef _WIN32
  constexpr unsigned kIntegerDivideByZero = 0xC0000094;
  const auto faulted = [](int status) { return static_cast<unsigned>(status) == kIntegerDivideByZero; };
#else
  const testing::KilledBySignal faulted(SIGFPE);
#endif
  EXPECT_EXIT(useDead(root), faulted, "");
  std::fill(std::begin(place), std::end(place), static_cast<unsigned char>(0xA5));
  // Here a sanitizer, which looks for the object's class, may be the first to complain: it exits with 1.
  const auto faultedOrNoticed = [&](int status) { return faulted(status) || testing::ExitedWithCode(1)(status); };
  EXPECT_EXIT(useDead(root), faultedOrNoticed, "") << "was never alive";
}

TEST(CommandDeathTest, FaultsOnADeadCommand) {
  faultsWhenDead<ClientCmdProcessorType>();
  faultsWhenDead<SrvCmdProcessorType>();
  faultsWhenDead<ClientTourCmdProcessorType>();
  faultsWhenDead<SrvTourCmdProcessorType>();
  faultsWhenDead<ClientMiscCmdProcessorType>();
  faultsWhenDead<SrvMiscCmdProcessorType>();
}

#ifdef CP_HAS_RAPIDCHECK
// Against the standard set, through the sizes where the set moves to the heap.
TEST(ConnectionsSet, BehavesAsAnOrderedSet) {
  EXPECT_TRUE(rc::check([](const std::vector<std::pair<bool, std::uint8_t>>& steps) {
    ConnectionsSet set;
    std::set<std::int32_t> model;
    for (const auto& [insert, number] : steps) {
      const std::int32_t id = number % 40;
      if (insert) {
        RC_ASSERT(set.insert(id) == model.insert(id).second);
      } else {
        RC_ASSERT(set.erase(id) == (model.erase(id) == 1));
      }
      RC_ASSERT(set.contains(id) == (model.count(id) == 1));
    }
    ConnectionsSet copy(set);
    std::vector<std::int32_t> ids;
    for (const ConnectionID& id : copy) ids.push_back(id.value());
    RC_ASSERT(std::equal(ids.begin(), ids.end(), model.begin(), model.end()));
  }));
}
#endif

TEST(CommandsResult, SortsByTheConnectionsAtTheTimeOfAdding) {
  CommandsResult<PokerCommandTmpl<SrvCmdProcessorType>, 1> results;
  Probe<SrvCmdProcessorType> a, b, c;
  a.setConnID(1);
  c.setConnID(-1);
  results.add(a);
  results.add(b);
  results.add(c);
  b.setConnID(2);
  using Commands = std::vector<PokerCommandTmpl<SrvCmdProcessorType>*>;
  EXPECT_EQ(results.addressed(), (Commands{&a, &c}));
  EXPECT_EQ(results.unaddressed(), Commands{&b});
  results.clear();
  EXPECT_TRUE(results.empty());
}

TEST(Dispatcher, ThrowsForAFamilyWithoutProcessor) {
  const auto textOf = [](CmdDispatcher& dispatcher, PokerCommandI&& command) -> std::string {
    try {
      dispatcher.dispatchCommand(command);
    } catch (const DisptachException& error) {
      return error.what();
    }
    return "no throw";
  };
  CmdDispatcher dispatcher;
  EXPECT_EQ(textOf(dispatcher, Probe<SrvCmdProcessorType>()), "empty srvProcessor");
  SrvCmdProcessor onlyServer;
  dispatcher.registerSrvCmdProcessor(onlyServer, true);
  EXPECT_EQ(textOf(dispatcher, Probe<SrvCmdProcessorType>()), "no throw");
  EXPECT_EQ(textOf(dispatcher, Probe<ClientCmdProcessorType>()), "empty clProcessor");
  EXPECT_EQ(textOf(dispatcher, Probe<ClientTourCmdProcessorType>()), "empty clTourProcessor");
  EXPECT_EQ(textOf(dispatcher, Probe<SrvTourCmdProcessorType>()), "empty srvTourProcessor");
  EXPECT_EQ(textOf(dispatcher, Probe<ClientMiscCmdProcessorType>()), "empty clMiscProcessor");
  EXPECT_EQ(textOf(dispatcher, Probe<SrvMiscCmdProcessorType>()), "empty srvMiscProcessor");
}

// The client families answer for themselves; the others answer what their registration said.
TEST(Dispatcher, AnswersAsRegistered) {
  struct Others : SrvCmdProcessor, SrvTourCmdProcessor, ClientMiscCmdProcessor, SrvMiscCmdProcessor {
    bool processCommand(PokerCommandTmpl<SrvCmdProcessorType>&) override { return !(calls += "srv ").empty(); }
    bool processCommand(PokerCommandTmpl<SrvTourCmdProcessorType>&) override { return !(calls += "srvTour ").empty(); }
    void processCommand(PokerCommandTmpl<ClientMiscCmdProcessorType>&) override { calls += "misc "; }
    void processCommand(const PokerCommandTmpl<SrvMiscCmdProcessorType>&) override { calls += "srvMisc "; }
    std::string calls;
  } others;
  struct Client : ClientCmdProcessor {
    bool processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) override {
      Results results;
      command.process(results, *this);
      return answer;
    }
    bool answer = true;
  } client;
  ClientTourCmdProcessor clientTour;

  CmdDispatcher dispatcher;
  dispatcher.registerClientCmdProcessor(client);
  dispatcher.registerClientTourCmdProcessor(clientTour);
  Probe<SrvCmdProcessorType> srvCommand;
  Probe<SrvTourCmdProcessorType> srvTourCommand;
  Probe<ClientMiscCmdProcessorType> miscCommand;
  Probe<SrvMiscCmdProcessorType> srvMiscCommand;
  for (const bool flag : {false, true}) {
    dispatcher.registerSrvCmdProcessor(others, flag);
    dispatcher.registerSrvTourCmdProcessor(others, flag);
    dispatcher.registerClientMiscCmdProcessor(others, flag);
    dispatcher.registerSrvMiscCmdProcessor(others, flag);
    others.calls.clear();
    EXPECT_EQ(dispatcher.dispatchCommand(srvCommand), flag);
    EXPECT_EQ(dispatcher.dispatchCommand(srvTourCommand), flag);
    EXPECT_EQ(dispatcher.dispatchCommand(miscCommand), flag);
    EXPECT_EQ(dispatcher.dispatchCommand(srvMiscCommand), flag);
    EXPECT_EQ(others.calls, "srv srvTour misc srvMisc ");
  }

  Probe<ClientCmdProcessorType> clientCommand;
  Probe<ClientTourCmdProcessorType> clientTourCommand;
  EXPECT_TRUE(dispatcher.dispatchCommand(clientCommand));
  client.answer = false;
  EXPECT_FALSE(dispatcher.dispatchCommand(clientCommand));
  EXPECT_EQ(clientCommand.processed, 2);
  EXPECT_TRUE(dispatcher.dispatchCommand(clientTourCommand)) << "the default answer of that processor";
  EXPECT_FALSE(SrvCmdProcessor().processCommand(srvCommand));
  EXPECT_FALSE(SrvTourCmdProcessor().processCommand(srvTourCommand));
  EXPECT_FALSE(client.ClientCmdProcessor::processCommand(clientCommand));
}

}  // namespace
}  // namespace poker

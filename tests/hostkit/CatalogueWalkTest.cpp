// Every class of the catalogue, from its pool to its handler.

#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/ClientMiscCmdProcessor.h>
#include <CommandProcessor/core/ClientTourCmdProcessor.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <CommandProcessor/core/SrvTourCmdProcessor.h>
#include <gtest/gtest.h>
#include <hostkit/CommandFactory.h>
#include <hostkit/Results.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "HostKitUse.h"

namespace poker::test {
namespace {

template <class Handler>
struct Arguments;
template <class Processor, class... Args>
struct Arguments<void (Processor::*)(Args...)> {
  using Types = std::tuple<Args...>;
};
template <auto handler, std::size_t I>
using Argument = std::tuple_element_t<I, typename Arguments<decltype(handler)>::Types>;

/// Which handler was called with which object.
using Calls = std::vector<std::pair<std::string, const void*>>;

template <class Processor, class Command>
bool processBy(Processor& processor, Command& command) {
  typename Processor::Results results;
  ResultsGuard release(results);  // the library answers one command by itself
  command.process(results, processor);
  return true;
}

struct MiscRecorder final : ClientMiscCmdProcessor {
  explicit MiscRecorder(Calls& record) : calls(record) {}
  void processCommand(PokerCommandTmpl<ClientMiscCmdProcessorType>& command) override {
    processBy<ClientMiscCmdProcessor>(*this, command);
  }

#define COMMAND(FAMILY, CODE, CLASS, PROCESSOR, HANDLER)
#define MISC_COMMAND(CODE, CLASS, HANDLER) \
  void HANDLER(Argument<&ClientMiscCmdProcessor::HANDLER, 0> command) override { calls.emplace_back(#CLASS, &command); }
#define UNHANDLED_COMMAND(FAMILY, CODE, CLASS, PROCESSOR)
#include <CommandProcessor/core/CommandList.inc>

  Calls& calls;
};

/// Both hosts in one.
struct Recorder final : ClientCmdProcessor, SrvCmdProcessor, ClientTourCmdProcessor, SrvTourCmdProcessor {
  Recorder() {
    dispatcher.registerClientCmdProcessor(*this);
    dispatcher.registerSrvCmdProcessor(*this, true);
    dispatcher.registerClientTourCmdProcessor(*this);
    dispatcher.registerSrvTourCmdProcessor(*this, true);
    dispatcher.registerClientMiscCmdProcessor(misc, true);
  }

  bool processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) override {
    return processBy<ClientCmdProcessor>(*this, command);
  }
  bool processCommand(PokerCommandTmpl<SrvCmdProcessorType>& command) override {
    return processBy<SrvCmdProcessor>(*this, command);
  }
  bool processCommand(PokerCommandTmpl<ClientTourCmdProcessorType>& command) override {
    return processBy<ClientTourCmdProcessor>(*this, command);
  }
  bool processCommand(PokerCommandTmpl<SrvTourCmdProcessorType>& command) override {
    return processBy<SrvTourCmdProcessor>(*this, command);
  }

#define COMMAND(FAMILY, CODE, CLASS, PROCESSOR, HANDLER)                                              \
  void HANDLER(Argument<&PROCESSOR::HANDLER, 0>, Argument<&PROCESSOR::HANDLER, 1> command) override { \
    calls.emplace_back(#CLASS, &command);                                                             \
  }
#define MISC_COMMAND(CODE, CLASS, HANDLER)
#define UNHANDLED_COMMAND(FAMILY, CODE, CLASS, PROCESSOR)
#include <CommandProcessor/core/CommandList.inc>

  CmdDispatcher dispatcher;
  Calls calls;
  MiscRecorder misc{calls};
};

// What the handler is given is what was sent: how values travel, other walks over all classes say.
TEST(Catalogue, IsWholeAndEveryClassReachesItsHandler) {
  Recorder recorder;
  for (const CommandClass& row : CommandFactory::classes()) {
    SCOPED_TRACE(row.name());
    ASSERT_NE(row.create, nullptr) << "the class is missing";
    const CommandHandle<> command(row.create());
    EXPECT_EQ(CommandFactory::find(*command), &row);
    EXPECT_EQ(CommandFactory::find(row.name()), &row);
    recorder.calls.clear();
    EXPECT_TRUE(recorder.dispatcher.dispatchCommand(*command));
    Calls expected;
    if (!row.description->handler.empty()) expected.emplace_back(row.name(), command.get());
    EXPECT_EQ(recorder.calls, expected);
  }
}

}  // namespace
}  // namespace poker::test

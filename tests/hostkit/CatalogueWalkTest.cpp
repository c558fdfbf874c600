// Every class of the catalogue, from its pool to its handler, with values that nobody has thought of.

#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/ClientMiscCmdProcessor.h>
#include <CommandProcessor/core/ClientTourCmdProcessor.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <CommandProcessor/core/SrvTourCmdProcessor.h>
#include <gtest/gtest.h>
#include <hostkit/CommandFactory.h>
#include <hostkit/Decode.h>
#include <hostkit/Results.h>
#include <inspect/CommandFields.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <tests/inspect/RandomFrame.h>
#include <tests/support/EveryClass.h>
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

TEST(Catalogue, IsWholeAndEveryClassGoesItsWayFromThePoolToItsHandler) {
  Recorder recorder;
  for (const CommandClass& row : CommandFactory::classes()) {
    SCOPED_TRACE(row.name());
    const CommandFields* fields = CommandFields::of(row.name());
    ASSERT_TRUE(row.create != nullptr && fields != nullptr) << "the class is missing";
    int sets = 0;
    for (std::uint64_t round = 0; round < 200; ++round) {
      const CommandHandle<> sent(row.create());
      RandomFields values(round * 256 + row.code());
      if (!assignRandom(*sent, values)) continue;
      ++sets;
      ASSERT_TRUE(row.fitsOnWire(*sent));
      const Bytes bytes = frameOf(*sent);

      CommandHandle<> received;
      if (row.travels && row.name() != "ClMiscDumpManager") {
        DecodeResult decoded = decodeCommand(std::span(bytes).subspan(4), {row.direction(), true, false});
        ASSERT_TRUE(decoded) << decoded.error.toString();
        received = std::move(decoded.command);
        ASSERT_EQ(CommandFactory::find(*received), &row);
      } else {  // handed over inside the process, as a clone
        received = CommandHandle<>(*sent->clone());
      }
      if (row.name() != "SrvPing") {  // which tells the time
        ASSERT_EQ(toHex(frameOf(*received)), toHex(bytes));
        EXPECT_TRUE(values.someAbsent() || shown(*received) == shown(*sent)) << shown(*received);
      }

      recorder.calls.clear();
      EXPECT_TRUE(recorder.dispatcher.dispatchCommand(*received));
      if (row.description->handler.empty()) {
        EXPECT_TRUE(recorder.calls.empty());
      } else {
        ASSERT_EQ(recorder.calls.size(), 1u);
        EXPECT_EQ(recorder.calls[0].first, row.name());
        EXPECT_EQ(recorder.calls[0].second, received.get());
      }
    }
    EXPECT_GE(sets, 20);
  }
}

}  // namespace
}  // namespace poker::test

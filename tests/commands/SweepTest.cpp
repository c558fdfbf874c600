// What every command class owes its users, over its messages from the smallest to the largest. GoldenTest says that no
// class is without a line, so a new one is covered the day it is written.

#include <CommandProcessor/commands/AllCommands.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Decode.h>
#include <inspect/schema/WireWalk.h>
#include <tests/support/AllocationCounter.h>
#include <tests/support/EveryClass.h>

#include <gtest/gtest.h>

#include <typeinfo>

namespace poker::test {
namespace {

Bytes fieldsOf(const Bytes& message) { return {message.begin() + 2, message.end()}; }

/// @param check  called with a message, a command that holds it, one as its constructor leaves it, and their class
template <class Check>
void forEveryMessage(Check&& check) {
  for (const ClassUnderTest& its : everyClass()) {
    const std::vector<Bytes> messages = messagesOf(its);
    for (std::size_t i = 0; i < messages.size(); ++i) {
      SCOPED_TRACE(std::string(its.name()) + ", message " + std::to_string(i));
      its.clearPool();  // so that it has to construct
      const CommandHandle<> fresh(its.fields->create()), used(its.fields->create());
      its.initFull(*used);
      ASSERT_EQ(decode(*used, fieldsOf(messages[i])), "");
      check(messages[i], *used, *fresh, its);
    }
  }
}

TEST(EveryCommand, InitForgetsTheReceiversAndAssignsEveryField) {
  forEveryMessage([](const Bytes&, PokerCommandI& used, PokerCommandI& fresh, const ClassUnderTest& its) {
    used.setConnID(5);
    its.initEmpty(used);
    EXPECT_TRUE(used.connections().empty());
    its.initEmpty(fresh);
    EXPECT_EQ(shown(used), shown(fresh));
  });
}

TEST(EveryCommand, DecodingIntoAUsedObjectLeavesNothingOfItsEarlierUse) {
  forEveryMessage([](const Bytes& message, PokerCommandI& used, PokerCommandI& fresh, const ClassUnderTest&) {
    const std::string before = shown(used);
    used.setConnID(5);
    EXPECT_EQ(decode(used, bodyOf(fresh)), "");
    EXPECT_TRUE(used.connections().empty());
    EXPECT_EQ(shown(used), shown(fresh));
    EXPECT_EQ(decode(used, fieldsOf(message)), "");
    EXPECT_EQ(shown(used), before);
  });
}

TEST(EveryCommand, ClonesAreEqualAndTheirOwn) {
  forEveryMessage([](const Bytes&, PokerCommandI& used, PokerCommandI& fresh, const ClassUnderTest&) {
    used.setConnID(5);
    used.setConnID(3);
    const std::string before = shown(used);
    const CommandHandle<> owner(*used.clone());
    const PokerCommandI& clone = *owner;
    EXPECT_TRUE(typeid(clone) == typeid(used));
    EXPECT_EQ(clone.connections(), used.connections());
    EXPECT_EQ(decode(used, bodyOf(fresh)), "");
    EXPECT_EQ(shown(clone), before);
    EXPECT_EQ(clone.getConnID(), 3);
  });
}

TEST(EveryCommand, IsSteadilyDecodedWithoutAllocation) {
  forEveryMessage([](const Bytes& message, PokerCommandI&, PokerCommandI&, const ClassUnderTest& its) {
    if (!its.isReceived()) return;
    const DecodePolicy policy{its.host->direction(), true, false};
    EXPECT_TRUE(decodeCommand(message, policy));
    EXPECT_TRUE(decodeCommand(message, policy));
    const AllocationCounter counter;
    for (int round = 0; round < 3; ++round) EXPECT_TRUE(decodeCommand(message, policy));
    EXPECT_EQ(counter.calls(), 0u);
  });
}

TEST(EveryCommand, MarksTheBufferAsPrivateForThreeClassesAlone) {
  forEveryMessage([](const Bytes&, PokerCommandI& used, PokerCommandI&, const ClassUnderTest&) {
    SerializeCommandBuf buf(16);
    used.serialize(buf);
    EXPECT_EQ(buf.mark(), typeid(used) == typeid(SrvLogonOk) || typeid(used) == typeid(SrvPlayMoneyMessage) ||
                              typeid(used) == typeid(SrvCashierStatus));
    buf.setMark();
    used.serialize(buf);
    EXPECT_TRUE(buf.mark()) << "the mark of an earlier command is lost";
  });
}

// Every flags byte through all its values, wherever one stands: read and written by its masks.
TEST(EveryCommand, ReadsAndWritesEachFlagsByteByItsMasks) {
  int flagsBytes = 0;
  for (const ClassUnderTest& its : everyClass()) {
    SCOPED_TRACE(its.name());
    Bytes message = messagesOf(its).back();
    struct Place {
      std::size_t offset;
      const SchemaField* field;
    };
    std::vector<Place> places;
    walkCommand(*its.schema, message, [&](const WirePiece& piece) {
      if (piece.field->isFlags()) places.push_back({piece.offset, piece.field});
    });
    const CommandHandle<> command(its.fields->create());
    for (const Place& place : places) {
      ++flagsBytes;
      const std::uint8_t before = message[place.offset];
      for (unsigned value = 0; value < 256; ++value) {
        message[place.offset] = static_cast<std::uint8_t>(value);
        ASSERT_EQ(decode(*command, fieldsOf(message)), "");
        unsigned expected = 0;
        for (const SchemaField& flag : place.field->fields) expected |= (value & flag.mask) != 0 ? flag.mask : 0u;
        ASSERT_EQ(encode(*command)[place.offset], expected) << place.field->name << ' ' << value;
      }
      message[place.offset] = before;
    }
  }
  EXPECT_GE(flagsBytes, 3);
}

}  // namespace
}  // namespace poker::test

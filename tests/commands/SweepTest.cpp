// What every command class owes its users, over all classes and all values of the golden lines. GoldenTest says that no
// class is without such a line, so a new one is covered the day it is written.

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/types/FieldJson.h>
#include <hostkit/CommandHandle.h>
#include <inspect/CommandFields.h>
#include <tests/support/AllocationCounter.h>
#include <tests/support/Golden.h>
#include <tests/support/WireBytes.h>

#include <map>
#include <tuple>
#include <typeinfo>

namespace poker::test {
namespace {

/// Hands out another visitor's values, with texts that no string can hold inside itself.
class LongTexts : public FieldVisitor {
 public:
  explicit LongTexts(FieldVisitor& source) : source_(source) {}
  void number(const Field& field, std::int64_t& value) override { source_.number(field, value); }
  void real(const Field& field, double& value) override { source_.real(field, value); }
  void text(const Field& field, std::string& value) override {
    source_.text(field, value);
    if (field.size == 0 && !value.empty()) value += " and more than a short string holds";
  }
  void bytes(const Field& field, std::vector<std::uint8_t>& value) override { source_.bytes(field, value); }
  void beginRecord(const Field& field) override { source_.beginRecord(field); }
  void endRecord(const Field& field) override { source_.endRecord(field); }
  std::size_t beginList(const Field& field, std::size_t size) override { return source_.beginList(field, size); }
  void endList(const Field& field) override { source_.endList(field); }
  std::size_t beginMap(const Field& field, std::size_t size) override { return source_.beginMap(field, size); }
  void beginEntry() override { source_.beginEntry(); }
  void endEntry() override { source_.endEntry(); }
  void endMap(const Field& field) override { source_.endMap(field); }
  void beginPart(std::string_view when, bool present) override { source_.beginPart(when, present); }
  void endPart() override { source_.endPart(); }

 private:
  FieldVisitor& source_;
};

struct Class {
  void (*clearPool)();
  void (*init)(PokerCommandI&);  // with arguments that are zero or empty
};

template <class T, class B, class... Args>
void initEmpty(T& command, void (B::*init)(Args...)) {
  std::tuple<std::remove_cvref_t<Args>...> arguments;
  std::apply([&](auto&... argument) { (command.*init)(argument...); }, arguments);
}

template <class T>
void addClass(std::map<std::string_view, Class>& classes) {
  if constexpr (requires { sizeof(T); }) {
    const auto init = [](PokerCommandI& root) {
      T& command = dynamic_cast<T&>(root);
      if constexpr (requires { command.init(); }) {
        command.init();
      } else if constexpr (requires { &T::init; }) {
        initEmpty(command, &T::init);
      } else {
        command.init({}, {});
      }
    };
    classes[CommandInfo<T>::name] = {CachedCmdCreator<T>::clearCache, init};
  }
}

std::map<std::string_view, Class> allClasses() {
  std::map<std::string_view, Class> classes;
#define COMMAND(FAMILY, CODE, CLASS, PROCESSOR, HANDLER) addClass<CLASS>(classes);
#include <CommandProcessor/core/CommandList.inc>
  return classes;
}

/// Of the objects and not of their bytes: those of SrvPing change with the clock.
std::string shown(const PokerCommandI& command) {
  FieldsToJson json(JsonSecrets::kShow);
  CommandFields::of(command)->visit(command, json);
  return json.take();
}

/// @param check  called with a command that holds a line's values, one as its constructor leaves it, and its class
template <class Check>
void forEveryValue(Check&& check) {
  const auto classes = allClasses();
  for (const GoldenLine& line : goldenLines(CP_TEST_DATA_DIR)) {
    SCOPED_TRACE(line.where + " " + line.name);
    const Class& its = classes.at(line.name);
    const CommandFields& fields = *CommandFields::of(line.name);
    its.clearPool();  // so that it has to construct
    const CommandHandle<> fresh(fields.create()), used(fields.create());
    FieldsFromJson(line.json, JsonSecrets::kShow).run([&](FieldVisitor& values) {
      LongTexts texts(values);
      fields.assign(*used, texts);
    });
    check(*used, *fresh, its);
  }
}

TEST(EveryCommand, InitForgetsTheReceiversAndAssignsEveryField) {
  forEveryValue([](PokerCommandI& used, PokerCommandI& fresh, const Class& its) {
    used.setConnID(5);
    its.init(used);
    EXPECT_TRUE(used.connections().empty());
    its.init(fresh);
    EXPECT_EQ(shown(used), shown(fresh));
  });
}

TEST(EveryCommand, DecodingIntoAUsedObjectLeavesNothingOfItsEarlierUse) {
  forEveryValue([](PokerCommandI& used, PokerCommandI& fresh, const Class&) {
    const Bytes body = bodyOf(used);
    const std::string before = shown(used);
    used.setConnID(5);
    EXPECT_EQ(decode(used, bodyOf(fresh)), "");
    EXPECT_TRUE(used.connections().empty());
    EXPECT_EQ(shown(used), shown(fresh));
    EXPECT_EQ(decode(used, body), "");
    EXPECT_EQ(shown(used), before);
  });
}

TEST(EveryCommand, ClonesAreEqualAndTheirOwn) {
  forEveryValue([](PokerCommandI& used, PokerCommandI& fresh, const Class&) {
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

TEST(EveryCommand, FindsEveryCutAndSteadilyDecodesWithoutAllocation) {
  forEveryValue([](PokerCommandI& used, PokerCommandI& fresh, const Class&) {
    const Bytes body = bodyOf(used);
    for (std::size_t size = 0; size < body.size(); ++size) {
      EXPECT_TRUE(isReadMessage(decode(fresh, Bytes(body.data(), body.data() + size)))) << size;
    }
    ASSERT_EQ(decode(fresh, body), "");
    const AllocationCounter counter;
    for (int round = 0; round < 3; ++round) {
      DeserializeCommandBuf in(body.data(), static_cast<std::uint32_t>(body.size()));
      fresh.deserialize(in);
    }
    EXPECT_EQ(counter.calls(), 0u);
    EXPECT_EQ(shown(fresh), shown(used));
  });
}

TEST(EveryCommand, MarksTheBufferAsPrivateForThreeClassesAlone) {
  forEveryValue([](PokerCommandI& used, PokerCommandI&, const Class&) {
    SerializeCommandBuf buf(16);
    used.serialize(buf);
    EXPECT_EQ(buf.mark(), typeid(used) == typeid(SrvLogonOk) || typeid(used) == typeid(SrvPlayMoneyMessage) ||
                              typeid(used) == typeid(SrvCashierStatus));
    buf.setMark();
    used.serialize(buf);
    EXPECT_TRUE(buf.mark()) << "the mark of an earlier command is lost";
  });
}

}  // namespace
}  // namespace poker::test

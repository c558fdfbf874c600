#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/types/FieldJson.h>
#include <hostkit/CommandHandle.h>
#include <tests/support/EveryClass.h>
#include <tests/support/Golden.h>
#include <tests/support/SchemaBytes.h>

#include <tuple>
#include <type_traits>

namespace poker::test {
namespace {

template <class T>
void fill(T& argument) {
  // Room for what a size of 1 beside it promises.
  static constexpr char kText[] = "a text that no short string can hold inside itself";
  if constexpr (std::is_same_v<T, const char*>) {
    argument = kText;
  } else if constexpr (std::is_same_v<T, const unsigned char*>) {
    argument = reinterpret_cast<const unsigned char*>(kText);
  } else if constexpr (std::is_same_v<T, std::string>) {
    argument = kText;
  } else if constexpr (std::is_arithmetic_v<T>) {
    argument = 1;
  }
}

template <class T, class B, class... Args>
void initWith(T& command, void (B::*init)(Args...), bool full) {
  std::tuple<std::remove_cvref_t<Args>...> arguments;
  if (full) std::apply([](auto&... argument) { (fill(argument), ...); }, arguments);
  std::apply([&](auto&... argument) { (command.*init)(argument...); }, arguments);
}

template <class T, bool full>
void initAs(PokerCommandI& root) {
  T& command = dynamic_cast<T&>(root);
  if constexpr (requires { command.init(); }) {
    command.init();
  } else if constexpr (requires { &T::init; }) {
    initWith(command, &T::init, full);
  } else {
    command.init({}, {});
  }
}

template <class T>
ClassUnderTest classOf() {
  constexpr std::string_view name = CommandInfo<T>::name;
  return {CommandFactory::find(name),
          CommandFields::of(name),
          CommandSchema::find(name),
          CachedCmdCreator<T>::clearCache,
          [] { return CachedCmdCreator<T>::cashedCmds.tsSize(); },
          initAs<T, false>,
          initAs<T, true>};
}

}  // namespace

const std::vector<ClassUnderTest>& everyClass() {
  static const std::vector<ClassUnderTest> classes = {
#define COMMAND(FAMILY, CODE, CLASS, PROCESSOR, HANDLER) classOf<CLASS>(),
#include <CommandProcessor/core/CommandList.inc>
  };
  return classes;
}

std::vector<Bytes> messagesOf(const ClassUnderTest& its) {
  static const std::vector<GoldenLine> golden = goldenLines(CP_TEST_DATA_DIR);
  its.clearPool();
  const CommandHandle<> fresh(its.fields->create());
  std::vector<Bytes> messages = {encode(*fresh)};
  for (const GoldenLine& line : golden) {
    if (line.name == its.name()) messages.push_back(hex(line.hex));
  }
  messages.push_back(schemaBytes(*its.schema, {.elements = 40, .text = 60}));
  return messages;
}

std::string shown(const PokerCommandI& command) {
  FieldsToJson json(JsonSecrets::kShow);
  CommandFields::of(command)->visit(command, json);
  return json.take();
}

}  // namespace poker::test

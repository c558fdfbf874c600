#include <CommandProcessor/commands/AllCommands.h>
#include <inspect/CommandFields.h>

#include <map>
#include <typeindex>
#include <unordered_map>

namespace poker {

namespace {

struct Rows {
  std::map<std::string_view, CommandFields> byName;
  std::unordered_map<std::type_index, const CommandFields*> byType;

  Rows() {
#define COMMAND(FAMILY, CODE, Class, Processor, handler) add<Class>();
#include <CommandProcessor/core/CommandList.inc>
  }

  template <class T>
  void add() {
    if constexpr (requires { sizeof(T); }) {
      const auto place = byName.emplace(
          CommandInfo<T>::name,
          CommandFields{
              .description = findCommand(CommandInfo<T>::name),
              .create = []() -> PokerCommandI& { return CachedCmdCreator<T>::create(); },
              .visit = [](const PokerCommandI& command,
                          FieldVisitor& visitor) { static_cast<const T&>(command).visitFields(visitor); },
              .assign = [](PokerCommandI& command,
                           FieldVisitor& visitor) { static_cast<T&>(command).assignFields(visitor); },
          });
      byType.emplace(typeid(T), &place.first->second);
    }
  }
};

const Rows& rows() {
  static const Rows theRows;
  return theRows;
}

}  // namespace

const CommandFields* CommandFields::of(const PokerCommandI& command) {
  const auto row = rows().byType.find(typeid(command));
  return row == rows().byType.end() ? nullptr : row->second;
}

const CommandFields* CommandFields::of(std::string_view name) {
  const auto row = rows().byName.find(name);
  return row == rows().byName.end() ? nullptr : &row->second;
}

}  // namespace poker

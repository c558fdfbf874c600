#include <hostkit/CommandFactory.h>

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <CommandProcessor/pool/CachedCmdCreator.h>

#include <array>
#include <cstdint>
#include <string_view>

namespace poker {
namespace {

#define COMMAND(FAMILY, CODE, CLASS, PROCESSOR, HANDLER) +1
constexpr std::size_t kClasses = 0
#include <CommandProcessor/core/CommandList.inc>
    ;
static_assert(kClasses < 0xFF, "the index of the pairs holds one byte a pair");

constexpr std::size_t kFamilies = static_cast<std::size_t>(ProcessorFamily::ClientMisc) + 1;

// A class that the catalogue names and no header defines yet is incomplete here: it gets no operations.
template <class T>
CommandClass classOf(const CommandDescription& description) {
  CommandClass result{&description, nullptr, nullptr, nullptr, nullptr, description.name != "UpdateHardwareInfo"};
  if constexpr (requires { sizeof(T); }) {
    result.create = []() -> PokerCommandI& { return CachedCmdCreator<T>::create(); };
    result.wipeSecrets = [](PokerCommandI& command) { static_cast<T&>(command).wipeSecrets(); };
    result.fitsOnWire = [](const PokerCommandI& command) { return static_cast<const T&>(command).fitsOnWire(); };
    result.type = &typeid(T);
  }
  return result;
}

struct Table {
  std::array<CommandClass, kClasses> classes;
  std::array<std::array<std::uint8_t, 256>, kFamilies> byPair{};  // place in `classes`, from 1; 0 for none
  std::size_t dumpManager = 0;

  Table() : classes(allClasses()) {
    for (std::size_t i = 0; i < kClasses; ++i) {
      // The one pair with two classes is the other one's.
      if (classes[i].name() == "ClMiscDumpManager") {
        dumpManager = i;
        continue;
      }
      byPair[static_cast<std::size_t>(classes[i].family())][classes[i].code()] = static_cast<std::uint8_t>(i + 1);
    }
  }

  // The rows of the catalogue stand in the order of the list that both are made from.
  static std::array<CommandClass, kClasses> allClasses() {
    const CommandDescription* row = commandCatalogue().data();
    return {
#define COMMAND(FAMILY, CODE, CLASS, PROCESSOR, HANDLER) classOf<CLASS>(*row++),
#include <CommandProcessor/core/CommandList.inc>
    };
  }
};

const Table& table() noexcept {
  static const Table instance;
  return instance;
}

/// A command tells its family only to a dispatcher.
class FamilyProbe final : public CmdDispatcherI {
 public:
  bool dispatchToProcesor(PokerCommandTmpl<SrvMiscCmdProcessorType>&) const override {
    return found(ProcessorFamily::ServerMisc);
  }
  bool dispatchToProcesor(PokerCommandTmpl<ClientMiscCmdProcessorType>&) const override {
    return found(ProcessorFamily::ClientMisc);
  }
  bool dispatchToProcesor(PokerCommandTmpl<SrvTourCmdProcessorType>&) const override {
    return found(ProcessorFamily::ServerTour);
  }
  bool dispatchToProcesor(PokerCommandTmpl<ClientTourCmdProcessorType>&) const override {
    return found(ProcessorFamily::ClientTour);
  }
  bool dispatchToProcesor(PokerCommandTmpl<SrvCmdProcessorType>&) const override {
    return found(ProcessorFamily::Server);
  }
  bool dispatchToProcesor(PokerCommandTmpl<ClientCmdProcessorType>&) const override {
    return found(ProcessorFamily::Client);
  }

  ProcessorFamily family() const { return family_; }

 private:
  bool found(ProcessorFamily family) const {
    family_ = family;
    return true;
  }

  mutable ProcessorFamily family_ = ProcessorFamily::ServerMisc;
};

}  // namespace

const CommandClass* CommandFactory::find(ProcessorFamily family, std::uint8_t code) noexcept {
  const auto row = static_cast<std::size_t>(family);
  if (row >= kFamilies) return nullptr;
  const std::uint8_t place = table().byPair[row][code];
  return place == 0 ? nullptr : &table().classes[place - 1u];
}

const CommandClass* CommandFactory::find(const PokerCommandI& command) noexcept {
  FamilyProbe probe;
  const_cast<PokerCommandI&>(command).dispatch(probe);  // the probe changes nothing
  if (command.getTypeCode() > 0xFF) return nullptr;
  const auto code = static_cast<std::uint8_t>(command.getTypeCode());
  // Four classes write another family than that of their processor, and two share a pair: the object's own type
  // decides.
  for (const CommandClass* found :
       {find(probe.family(), code), find(ProcessorFamily::Connection, code), &table().classes[table().dumpManager]}) {
    if (found != nullptr && found->type != nullptr && *found->type == typeid(command)) return found;
  }
  return nullptr;
}

const CommandClass* CommandFactory::find(std::string_view name) noexcept {
  for (const CommandClass& candidate : table().classes) {
    if (candidate.name() == name) return &candidate;
  }
  return nullptr;
}

std::span<const CommandClass> CommandFactory::classes() noexcept { return table().classes; }

CommandHandle<> CommandFactory::create(ProcessorFamily family, std::uint8_t code) {
  const CommandClass* found = find(family, code);
  if (found == nullptr || found->create == nullptr) return {};
  return CommandHandle<>(found->create());
}

}  // namespace poker

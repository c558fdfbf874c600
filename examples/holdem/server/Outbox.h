#pragma once

#include <CommandProcessor/core/ConnectionsSet.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Encode.h>

#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

namespace poker::holdem {

/// What the server has to say in answer to one event (a command that came, a timer), whatever its family, collected and then
/// sent in the order in which it was put here; each command is encoded once, however many it goes to. One thread.
class Outbox {
 public:
  using Send = std::function<void(const ConnectionID& to, std::span<const std::uint8_t> frame)>;

  explicit Outbox(Send send) : send_(std::move(send)) {}

  /// Called at the end of each event, before anything is sent: the place for what follows from all that happened in it.
  void atEnd(std::function<void()> followUp) { followUp_ = std::move(followUp); }

  /// Does the work and sends what it has put here. Throws what the work throws; nothing is sent then.
  template <class Work>
  void run(Work&& work) {
    struct Release {
      std::vector<CommandHandle<>>& commands;
      ~Release() { commands.clear(); }
    } const release{commands_};
    work();
    if (followUp_) followUp_();
    for (const CommandHandle<>& command : commands_) {
      const std::span<const std::uint8_t> frame = encodeCommand(*command, buffer_);
      for (const ConnectionID& to : command->connections()) send_(to, frame);
    }
  }

  /// Puts a T, filled with `init(args...)`, here; not when there is nobody to get it.
  template <class T, class... Args>
  void add(const ConnectionsSet& to, Args&&... args) {
    if (!to.empty()) put(make<T>(std::forward<Args>(args)...), to);
  }
  template <class T, class... Args>
  void add(const ConnectionID& to, Args&&... args) {
    if (!to.isValid()) return;
    CommandHandle<T> command = make<T>(std::forward<Args>(args)...);
    command->setConnID(to);
    commands_.push_back(std::move(command));
  }
  template <class T>
  void put(CommandHandle<T> command, const ConnectionsSet& to) {
    command->addConnections(to);
    commands_.push_back(std::move(command));
  }
  /// Takes over what a command's handler has put into its results, addressed.
  template <class Results>
  void take(Results& results) {
    commands_.reserve(commands_.size() + results.addressed().size());
    for (auto* command : results.addressed()) commands_.emplace_back(*command);
    results.clear();
  }

 private:
  Send send_;
  std::function<void()> followUp_;
  std::vector<CommandHandle<>> commands_;
  SerializeCommandBuf buffer_{1024};
};

}  // namespace poker::holdem

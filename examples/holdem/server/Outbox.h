#pragma once

#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Results.h>

#include <cstdint>
#include <functional>
#include <span>
#include <utility>

namespace poker::holdem {

/// What the server has to say in answer to one event (a command that came, a timer), collected and then sent in the order in
/// which it was put here; each command is encoded once, however many it goes to. One thread.
class Outbox {
 public:
  using Results = ClientCmdProcessor::Results;
  using Send = std::function<void(const ConnectionID& to, std::span<const std::uint8_t> frame)>;

  explicit Outbox(Send send) : send_(std::move(send)) {}

  /// Called at the end of each event, before anything is sent: the place for what follows from all that happened in it.
  void atEnd(std::function<void()> followUp) { followUp_ = std::move(followUp); }

  /// Does the work and sends what it has put here. Throws what the work throws; nothing is sent then.
  template <class Work>
  void run(Work&& work) {
    ResultsGuard guard(results_);
    work(results_);
    if (followUp_) followUp_();
    const auto nobody = [](const EncodedCommand&) {};
    guard.send(
        buffer_, [&](const EncodedCommand& command, const ConnectionID& to) { send_(to, command.frame); }, nobody);
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
    results_.add(*command);
    command.detach();
  }
  template <class T>
  void put(CommandHandle<T> command, const ConnectionsSet& to) {
    command->addConnections(to);
    results_.add(*command);
    command.detach();
  }

 private:
  Send send_;
  std::function<void()> followUp_;
  Results results_;
  SerializeCommandBuf buffer_{1024};
};

}  // namespace poker::holdem

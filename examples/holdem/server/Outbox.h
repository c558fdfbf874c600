#pragma once

#include <CommandProcessor/core/ConnectionsSet.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Encode.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace poker::holdem {

/// Where a connection is: at a table, in a hand.
struct Whereabouts {
  std::string_view table;  ///< a name of its own in the server
  std::uint64_t hand = 0;  ///< 0: none is played
};

/// What the server has to say in answer to one event (a command that came, a timer), whatever its family, collected and then
/// sent in the order in which it was put here; each command is encoded once, however many it goes to. One thread.
class Outbox {
 public:
  using Send = std::function<void(const ConnectionID& to, std::span<const std::uint8_t> frame)>;
  using Locate = std::function<Whereabouts(const ConnectionID&)>;

  explicit Outbox(Send send) : send_(std::move(send)) {}

  /// Called at the end of each event, before anything is sent: the place for what follows from all that happened in it.
  void atEnd(std::function<void()> followUp) { followUp_ = std::move(followUp); }

  /// From now on notes where each receiver is when a command is put here, for who records them: by the end of the event
  /// the receiver may be at another table, and the hand may be over.
  void notePlaces(Locate locate) { locate_ = std::move(locate); }
  /// Inside of a call of Send: where the receiver was, if that is noted; null otherwise.
  const Whereabouts* placeSentTo() const { return placeSentTo_; }

  /// Does the work and sends what it has put here. Throws what the work throws; nothing is sent then.
  template <class Work>
  void run(Work&& work) {
    struct Release {
      Outbox& outbox;
      ~Release() {
        outbox.commands_.clear();
        outbox.places_.clear();
        outbox.placeSentTo_ = nullptr;
      }
    } const release{*this};
    work();
    if (followUp_) followUp_();
    std::size_t sent = 0;
    for (const CommandHandle<>& command : commands_) {
      const std::span<const std::uint8_t> frame = encodeCommand(*command, buffer_);
      for (const ConnectionID& to : command->connections()) {
        if (locate_) placeSentTo_ = &places_[sent++];
        send_(to, frame);
      }
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
    add(std::move(command));
  }
  template <class T>
  void put(CommandHandle<T> command, const ConnectionsSet& to) {
    command->addConnections(to);
    add(std::move(command));
  }
  /// Takes over what a command's handler has put into its results, addressed.
  template <class Results>
  void take(Results& results) {
    commands_.reserve(commands_.size() + results.addressed().size());
    for (auto* command : results.addressed()) add(CommandHandle<>(*command));
    results.clear();
  }

 private:
  void add(CommandHandle<> command) {
    if (locate_) {
      for (const ConnectionID& to : command->connections()) places_.push_back(locate_(to));
    }
    commands_.push_back(std::move(command));
  }

  Send send_;
  std::function<void()> followUp_;
  Locate locate_;
  std::vector<CommandHandle<>> commands_;
  std::vector<Whereabouts> places_;  // of the receivers of all commands, in their order
  const Whereabouts* placeSentTo_ = nullptr;
  SerializeCommandBuf buffer_{1024};
};

}  // namespace poker::holdem

#pragma once

#include <vector>

namespace poker {

/// The commands that handlers produce in answer to one command. It holds pointers only: whoever called `process` sends
/// the commands and then releases each one exactly once. Reuse one object and clear() it between commands, so that its
/// lists keep their memory. One thread at a time.
template <class Command, int Side>
class CommandsResult;

/// The server's side: replies that carry connection ids are kept apart from those that carry none.
template <class Command>
class CommandsResult<Command, 1> {
 public:
  /// Appends the command to the list that its connection set, as it is now, asks for.
  void add(Command& command) { (command.connections().empty() ? unaddressed_ : addressed_).push_back(&command); }
  /// Commands that name their receivers, in the order in which they were added.
  const std::vector<Command*>& addressed() const { return addressed_; }
  /// Commands without a connection id: who gets them is the host's decision.
  const std::vector<Command*>& unaddressed() const { return unaddressed_; }

  bool empty() const { return addressed_.empty() && unaddressed_.empty(); }
  /// Forgets the commands; releases none.
  void clear() {
    addressed_.clear();
    unaddressed_.clear();
  }

 private:
  std::vector<Command*> addressed_;
  std::vector<Command*> unaddressed_;
};

/// The client's side: there is one connection, so one list. This library adds nothing to it.
template <class Command>
class CommandsResult<Command, 0> {
 public:
  void add(Command& command) { commands_.push_back(&command); }
  const std::vector<Command*>& commands() const { return commands_; }
  bool empty() const { return commands_.empty(); }
  /// Forgets the commands; releases none.
  void clear() { commands_.clear(); }

 private:
  std::vector<Command*> commands_;
};

}  // namespace poker

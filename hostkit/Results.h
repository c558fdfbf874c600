#pragma once

#include <CommandProcessor/core/CommandsResult.h>
#include <CommandProcessor/core/PokerCommandI.h>
#include <CommandProcessor/core/PokerCommandTmpl.h>
#include <CommandProcessor/types/TypeWrapper.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Encode.h>

#include <cstddef>
#include <span>
#include <vector>

namespace poker {

/// A command beside its finished bytes, which are valid until the call that shows them returns.
struct EncodedCommand {
  const PokerCommandI& command;
  std::span<const std::uint8_t> frame;
};

/// Puts a handler's answer into the results, addressed to where the request came from. A request without a connection is
/// answered to the invalid id, as the library's own handler does.
/// @throws std::bad_alloc  the answer is released then
template <class Results, class Reply>
void addReply(Results& results, const PokerCommandI& request, CommandHandle<Reply> reply) {
  reply->setConnID(request.getConnID());
  results.add(*reply);
  reply.detach();
}

/// Sends what handlers collected and releases each command exactly once, whatever happens: also when a handler or the
/// sending throws midway, and also a command that was added twice.
///
///     bool Processor::processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) {
///       ResultsGuard guard(results_);                        // results_ is reused from command to command
///       command.process(results_, *this);
///       guard.send(buffer_, [&](const EncodedCommand& reply, const ConnectionID& to) { sendTo(to, reply.frame); },
///                  [&](const EncodedCommand& reply) { sendTo(requester, reply.frame); });
///       return true;
///     }
///
/// Each command is encoded once, however many connections it goes to. One thread at a time.
template <class Results>
class [[nodiscard]] ResultsGuard;

namespace detail {
// Releases a pointer of a list unless the same one stands before it, here or in the list before.
template <class Command>
void releaseEach(const std::vector<Command*>& list, const std::vector<Command*>* before = nullptr) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    bool seen = false;
    for (std::size_t j = 0; j < i && !seen; ++j) seen = list[j] == list[i];
    if (before != nullptr) {
      for (std::size_t j = 0; j < before->size() && !seen; ++j) seen = (*before)[j] == list[i];
    }
    if (!seen) list[i]->release();
  }
}
}  // namespace detail

/// The server's side.
template <class Command>
class [[nodiscard]] ResultsGuard<CommandsResult<Command, 1>> {
 public:
  using Results = CommandsResult<Command, 1>;

  explicit ResultsGuard(Results& results) noexcept : results_(results) {}
  ResultsGuard(const ResultsGuard&) = delete;
  ResultsGuard& operator=(const ResultsGuard&) = delete;
  ~ResultsGuard() {
    detail::releaseEach(results_.addressed());
    detail::releaseEach(results_.unaddressed(), &results_.addressed());
    results_.clear();
  }

  /// @param toConnection  (const EncodedCommand&, const ConnectionID&), for each id of each addressed command
  /// @param unaddressed   (const EncodedCommand&), for each command without an id
  /// @throws EncodeError, std::bad_alloc, and what the two throw; the rest stays unsent
  template <class ToConnection, class Unaddressed>
  void send(SerializeCommandBuf& buffer, ToConnection&& toConnection, Unaddressed&& unaddressed) {
    for (const Command* command : results_.addressed()) {
      const EncodedCommand encoded{*command, encodeCommand(*command, buffer)};
      for (const ConnectionID& id : command->connections()) toConnection(encoded, id);
    }
    for (const Command* command : results_.unaddressed()) {
      unaddressed(EncodedCommand{*command, encodeCommand(*command, buffer)});
    }
  }

 private:
  Results& results_;
};

/// The client's side: one connection, one list.
template <class Command>
class [[nodiscard]] ResultsGuard<CommandsResult<Command, 0>> {
 public:
  using Results = CommandsResult<Command, 0>;

  explicit ResultsGuard(Results& results) noexcept : results_(results) {}
  ResultsGuard(const ResultsGuard&) = delete;
  ResultsGuard& operator=(const ResultsGuard&) = delete;
  ~ResultsGuard() {
    detail::releaseEach(results_.commands());
    results_.clear();
  }

  /// @param toServer  (const EncodedCommand&), for each command
  /// @throws EncodeError, std::bad_alloc, and what it throws; the rest stays unsent
  template <class ToServer>
  void send(SerializeCommandBuf& buffer, ToServer&& toServer) {
    for (const Command* command : results_.commands()) {
      toServer(EncodedCommand{*command, encodeCommand(*command, buffer)});
    }
  }

 private:
  Results& results_;
};

template <class Command, int Side>
ResultsGuard(CommandsResult<Command, Side>&) -> ResultsGuard<CommandsResult<Command, Side>>;

}  // namespace poker

#pragma once

#include <CommandProcessor/pool/Queue.h>
#include <hostkit/CommandHandle.h>

#include <asio/io_context.hpp>

#include <functional>
#include <memory>

namespace poker {

/// Brings commands from other threads into an event loop: waits for the queue's event and hands over what was pushed.
///
///     Queue<PokerCommandI*> replies(true);                        // with an event; any thread pushes
///     QueueReader reader(context, replies, [&](CommandHandle<> reply) { server.find(reply->getConnID()) ... });
///
/// The queue must outlive the reader, and have no other consumer. The reader belongs to the thread of the io_context
/// and keeps that running until stop().
class QueueReader {
 public:
  using Handler = std::function<void(CommandHandle<>)>;

  /// @param handler  called on the io_context's thread, in the order of the pushes. What it throws leaves
  ///                 io_context::run(); the commands behind stay queued for the next run.
  /// @throws std::invalid_argument  when the queue was built without an event
  QueueReader(asio::io_context& context, Queue<PokerCommandI*>& queue, Handler handler);
  /// As stop(); what is still queued stays there.
  ~QueueReader();
  QueueReader(const QueueReader&) = delete;
  QueueReader& operator=(const QueueReader&) = delete;

  /// Hands nothing over any more. May be called by the handler.
  void stop();

 private:
  struct Impl;

  std::shared_ptr<Impl> impl_;
};

}  // namespace poker

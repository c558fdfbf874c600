#include <hostkit/QueueReader.h>

#include <CommandProcessor/platform/AutoResetEvent.h>
#include <hostkit/HandlerMemory.h>

#ifdef _WIN32
#include <asio/windows/object_handle.hpp>
#else
#include <asio/posix/stream_descriptor.hpp>
#endif

#include <stdexcept>
#include <utility>

namespace poker {
namespace {

/// So many commands are handed over before the loop's other work has its turn.
constexpr int kAtOnce = 256;

/// The event as the loop sees it. The queue owns it, so it is never closed here.
class EventWaiter {
 public:
#ifdef _WIN32
  EventWaiter(asio::io_context& context, AutoResetEvent& event) : handle_(context, duplicate(event.native())) {}

  template <class Handler>
  void wait(Handler&& handler) {
    handle_.async_wait(std::forward<Handler>(handler));
  }
  void stop() {
    std::error_code ignored;
    handle_.close(ignored);
  }

 private:
  static HANDLE duplicate(HANDLE event) {
    HANDLE copy = nullptr;
    const HANDLE process = GetCurrentProcess();
    if (DuplicateHandle(process, event, process, &copy, 0, FALSE, DUPLICATE_SAME_ACCESS) == 0) {
      throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "DuplicateHandle");
    }
    return copy;
  }

  asio::windows::basic_object_handle<asio::io_context::executor_type> handle_;
#else
  EventWaiter(asio::io_context& context, AutoResetEvent& event) : descriptor_(context, event.native()) {}

  template <class Handler>
  void wait(Handler&& handler) {
    descriptor_.async_wait(asio::posix::descriptor_base::wait_read, std::forward<Handler>(handler));
  }
  void stop() {
    if (descriptor_.is_open()) descriptor_.release();
  }

 private:
  asio::posix::basic_stream_descriptor<asio::io_context::executor_type> descriptor_;
#endif
};

}  // namespace

struct QueueReader::Impl : std::enable_shared_from_this<Impl> {
  Impl(asio::io_context& context, Queue<PokerCommandI*>& from, AutoResetEvent& announces, Handler calls)
      : queue(from), event(announces), handler(std::move(calls)), waiter(context, announces) {}
  ~Impl() { waiter.stop(); }

  void wait() {
    if (stopped) return;
    waiter.wait(detail::handlerIn(memory, [self = shared_from_this()](const std::error_code& failure) {
      if (!failure && !self->stopped) self->drain();
    }));
  }

  // The wait's own handler keeps this object alive meanwhile: what is handed over may destroy the reader.
  void drain() {
#ifndef _WIN32
    event.acknowledge();  // before the queue is looked at; elsewhere the wait itself has taken the signal
#endif
    // Whatever happens below, the loop comes back while commands may be left.
    struct Again {
      Impl& impl;
      ~Again() {
        if (impl.stopped) return;
        if (!impl.queue.tsEmpty()) impl.event.set();
        impl.wait();
      }
    } again{*this};
    for (int i = 0; i < kAtOnce && !stopped; ++i) {
      PokerCommandI* command = queue.tsGet();
      if (command == nullptr) return;
      handler(CommandHandle<>(*command));
    }
  }

  Queue<PokerCommandI*>& queue;
  AutoResetEvent& event;
  Handler handler;
  detail::HandlerMemory memory;
  EventWaiter waiter;
  bool stopped = false;
};

QueueReader::QueueReader(asio::io_context& context, Queue<PokerCommandI*>& queue, Handler handler) {
  AutoResetEvent* event = queue.getInEvent();
  if (event == nullptr) throw std::invalid_argument("QueueReader: the queue has no event");
  impl_ = std::make_shared<Impl>(context, queue, *event, std::move(handler));
  if (!queue.tsEmpty()) event->set();  // what was pushed may have been announced to somebody else
  impl_->wait();
}

QueueReader::~QueueReader() { stop(); }

void QueueReader::stop() {
  impl_->stopped = true;
  impl_->waiter.stop();
}

}  // namespace poker

#pragma once

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace poker::holdem {

/// One call that is due later; there is at most one. It is never made once this object is gone or has taken it back. All
/// calls come from the thread that runs the io_context.
class Later {
 public:
  explicit Later(asio::io_context& context) : timer_(context) {}

  /// In place of the call that was due.
  void in(std::chrono::milliseconds time, std::function<void()> call) {
    call_ = std::make_shared<std::function<void()>>(std::move(call));
    timer_.expires_after(time);
    timer_.async_wait([waiting = std::weak_ptr(call_)](const std::error_code&) {
      if (const auto due = waiting.lock()) (*due)();
    });
  }
  void cancel() {
    call_.reset();
    timer_.cancel();
  }

 private:
  asio::steady_timer timer_;
  std::shared_ptr<std::function<void()>> call_;
};

}  // namespace poker::holdem

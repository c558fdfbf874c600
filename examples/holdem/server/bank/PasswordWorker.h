#pragma once

#include <CommandProcessor/types/TypeWrapper.h>

#include <asio/io_context.hpp>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace poker::holdem {

/// Hashes passwords on a thread of its own, one after the other in the order in which they came: whoever guesses makes
/// others wait at the door, and nobody at a table. All calls, and the answers, come from the thread of the io_context.
class PasswordWorker {
 public:
  /// So many may wait: at kPasswordCost what the usual time for a logon has room for.
  static constexpr std::size_t kMostWaiting = 3000;

  explicit PasswordWorker(asio::io_context& context);
  /// Waits for the one that is under way; nothing is answered any more.
  ~PasswordWorker();
  PasswordWorker(const PasswordWorker&) = delete;
  PasswordWorker& operator=(const PasswordWorker&) = delete;

  /// Both answer later from the event loop, unless the client is forgotten by then. Memory or randomness that the system
  /// does not have (see hashPassword) is a std::system_error from the event loop.
  /// @param password  an acceptable one
  /// @return false when too many wait already: there will be no answer
  bool match(const ConnectionID& client, std::string_view password, std::string hash, std::function<void(bool)> done);
  bool hash(const ConnectionID& client, std::string_view password, unsigned cost,
            std::function<void(const std::string&)> done);
  /// The connection is gone: what waits for it is not worth the work any more.
  void forget(const ConnectionID& client);

 private:
  struct Job {
    ConnectionID client;
    std::string password;
    std::function<std::function<void()>(const std::string&)> work;  // on the thread; returns what answers
  };
  /// What the loop's calls hold, so that they find out when this object is gone.
  struct Alive {};

  bool add(Job job);
  void run();

  asio::io_context& context_;
  std::shared_ptr<Alive> alive_ = std::make_shared<Alive>();
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Job> waiting_;
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace poker::holdem

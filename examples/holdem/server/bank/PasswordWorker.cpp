#include <examples/holdem/server/bank/PasswordWorker.h>

#include <examples/holdem/server/bank/Password.h>

#include <asio/post.hpp>

#include <cstring>
#include <exception>
#include <utility>

#ifdef __linux__
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace poker::holdem {
namespace {

void wipe(std::string& secret) {
  explicit_bzero(secret.data(), secret.size());
  secret.clear();
}

/// Where there are fewer cores than threads, the event loop goes first.
void giveWay() {
#ifdef __linux__
  constexpr int kLast = 19;
  ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kLast);  // of this thread alone; works without, too
#endif
}

}  // namespace

PasswordWorker::PasswordWorker(asio::io_context& context) : context_(context), thread_([this] { run(); }) {}

PasswordWorker::~PasswordWorker() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    for (Job& job : waiting_) wipe(job.password);
    waiting_.clear();
  }
  changed_.notify_one();
  thread_.join();
}

bool PasswordWorker::match(const ConnectionID& client, std::string_view password, std::string hash,
                           std::function<void(bool)> done) {
  return add({client, std::string(password),
              [expected = std::move(hash), done = std::move(done)](const std::string& secret) -> std::function<void()> {
                return [matches = passwordMatches(secret, expected), done] { done(matches); };
              }});
}

bool PasswordWorker::hash(const ConnectionID& client, std::string_view password, unsigned cost,
                          std::function<void(const std::string&)> done) {
  return add({client, std::string(password),
              [cost, done = std::move(done)](const std::string& secret) -> std::function<void()> {
                return [made = hashPassword(secret, cost), done] { done(made); };
              }});
}

bool PasswordWorker::add(Job job) {
  {
    const std::lock_guard lock(mutex_);
    if (waiting_.size() >= kMostWaiting) {
      wipe(job.password);
      return false;
    }
    waiting_.push_back(std::move(job));
  }
  changed_.notify_one();
  return true;
}

void PasswordWorker::forget(const ConnectionID& client) {
  const std::lock_guard lock(mutex_);
  std::erase_if(waiting_, [&](Job& job) {
    const bool isOf = job.client == client;
    if (isOf) wipe(job.password);
    return isOf;
  });
}

void PasswordWorker::run() {
  giveWay();
  for (;;) {
    Job job;
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return ends_ || !waiting_.empty(); });
      if (ends_) return;
      job = std::move(waiting_.front());
      waiting_.pop_front();
    }
    std::function<void()> answer;
    try {
      answer = job.work(job.password);
    } catch (...) {
      answer = [failure = std::current_exception()] { std::rethrow_exception(failure); };
    }
    wipe(job.password);
    asio::post(context_, [answer = std::move(answer), alive = std::weak_ptr(alive_)] {
      if (!alive.expired()) answer();
    });
  }
}

}  // namespace poker::holdem

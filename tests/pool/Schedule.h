#pragma once

// Threads that a seed schedules: at each step of a lock or an event the next one to go on is drawn. They are fibers of
// one system thread, so a hundred thousand schedules take seconds and each comes out the same again.

#include <CommandProcessor/platform/SchedulerHooks.h>

#include <ucontext.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CP_FIBERS_OF_SANITIZER
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define CP_FIBERS_OF_SANITIZER
#endif
#ifdef CP_FIBERS_OF_SANITIZER
#include <sanitizer/common_interface_defs.h>
#endif

namespace poker::test {

class Schedule final : public SchedulerHooks {
 public:
  static constexpr std::size_t kMostThreads = 3;  ///< and one more to look at what they left

  /// @param trace  filled with what note() is told; null when nobody reads it
  explicit Schedule(std::uint64_t seed, std::string* trace = nullptr) : state_(seed), trace_(trace) {
    attach(this);
    calm_ = 1u << below(3);  // some schedules change threads at every step, some at every fourth
  }
  ~Schedule() { attach(nullptr); }
  Schedule(const Schedule&) = delete;
  Schedule& operator=(const Schedule&) = delete;

  void add(std::function<void()> body) {
    static std::array<std::unique_ptr<unsigned char[]>, kMostFibers> stacks;
    Fiber& fiber = fibers_[count_];
    auto& stack = stacks[count_++];
    if (!stack) stack = std::make_unique<unsigned char[]>(kStackBytes);
    fiber.body = std::move(body);
    getcontext(&fiber.context);
    fiber.context.uc_stack.ss_sp = fiber.stack = stack.get();
    fiber.context.uc_stack.ss_size = fiber.stackBytes = kStackBytes;
    fiber.context.uc_link = nullptr;
    makecontext(&fiber.context, &Schedule::enter, 0);
  }

  /// Lets the threads go on until none can.
  /// @return whether all have ended; false at a standstill, which only a wake() from outside ends
  bool run() {
    if (Fiber* first = draw()) switchTo(*first);
    for (std::size_t i = 0; i < count_; ++i) {
      if (!fibers_[i].ended) return false;
    }
    return true;
  }

  /// Where the threads sleep.
  std::vector<const void*> sleepers() const {
    std::vector<const void*> result;
    for (std::size_t i = 0; i < count_; ++i) {
      if (fibers_[i].sleepsAt != nullptr) result.push_back(fibers_[i].sleepsAt);
    }
    return result;
  }

  std::uint32_t below(std::uint32_t bound) {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return static_cast<std::uint32_t>((z ^ (z >> 31)) % bound);
  }

  void note(const char* what) {
    if (trace_ == nullptr) return;
    if (!trace_->empty()) *trace_ += ", ";
    *trace_ += current_ == nullptr ? "outside" : std::to_string(current_ - fibers_.data());
    *trace_ += ' ';
    *trace_ += what;
  }

  pthread_t self() noexcept override {
    return current_ != nullptr ? (pthread_t)current_ : pthread_self();  // NOLINT: a number here, a pointer elsewhere
  }
  void step() noexcept override {
    if (current_ == nullptr) return;
    if (++steps_ > kMostSteps) sleep(this);  // threads that go in circles come to nothing either
    if (below(calm_) == 0) switchTo(*draw());
  }
  void sleep(const void* address) noexcept override {
    current_->sleepsAt = address;
    Fiber* const next = draw();
    switchTo(next != nullptr ? *next : outside_);
  }
  void wake(const void* address, bool all) noexcept override {
    const std::size_t first = count_ == 0 ? 0 : below(static_cast<std::uint32_t>(count_));
    for (std::size_t i = 0; i < count_; ++i) {
      Fiber& fiber = fibers_[(first + i) % count_];
      if (fiber.sleepsAt != address) continue;
      fiber.sleepsAt = nullptr;
      if (!all) return;
    }
  }

 private:
  static constexpr std::size_t kMostFibers = kMostThreads + 1;
  static constexpr std::size_t kStackBytes = 64 * 1024;
  static constexpr std::size_t kMostSteps = 10'000;  // a few hundred are usual

  struct Fiber {
    ucontext_t context{};
    std::function<void()> body;
    const void* sleepsAt = nullptr;
    bool ended = false;
    void* stack = nullptr;
    std::size_t stackBytes = 0;
    void* sanitizersOwn = nullptr;
  };

  static void enter() {
    auto& schedule = static_cast<Schedule&>(*current());
    schedule.arrived(*schedule.current_);
    schedule.current_->body();
    schedule.current_->ended = true;
    Fiber* const next = schedule.draw();
    schedule.switchTo(next != nullptr ? *next : schedule.outside_);
  }

  /// One that can go on, the running one included; null when there is none.
  Fiber* draw() {
    std::array<Fiber*, kMostFibers> ready;
    std::uint32_t size = 0;
    for (std::size_t i = 0; i < count_; ++i) {
      if (!fibers_[i].ended && fibers_[i].sleepsAt == nullptr) ready[size++] = &fibers_[i];
    }
    return size == 0 ? nullptr : ready[below(size)];
  }

  void switchTo(Fiber& to) {
    Fiber& from = current_ != nullptr ? *current_ : outside_;
    if (&from == &to) return;
    current_ = &to == &outside_ ? nullptr : &to;
#ifdef CP_FIBERS_OF_SANITIZER
    __sanitizer_start_switch_fiber(from.ended ? nullptr : &from.sanitizersOwn, to.stack, to.stackBytes);
#endif
    swapcontext(&from.context, &to.context);
    arrived(from);
  }

  void arrived([[maybe_unused]] Fiber& here) {
#ifdef CP_FIBERS_OF_SANITIZER
    const void* bottom = nullptr;
    std::size_t bytes = 0;
    __sanitizer_finish_switch_fiber(here.sanitizersOwn, &bottom, &bytes);
    if (outside_.stack == nullptr) {  // the first switch of all comes from the system's own stack
      outside_.stack = const_cast<void*>(bottom);
      outside_.stackBytes = bytes;
    }
#endif
  }

  std::uint64_t state_;
  std::string* const trace_;
  std::uint32_t calm_ = 1;
  std::size_t steps_ = 0;
  std::array<Fiber, kMostFibers> fibers_;
  std::size_t count_ = 0;
  Fiber outside_;
  Fiber* current_ = nullptr;
};

}  // namespace poker::test

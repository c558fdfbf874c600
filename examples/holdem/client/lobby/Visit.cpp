#include <examples/holdem/client/lobby/Visit.h>

#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/terminal/Text.h>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

namespace poker::holdem {

namespace {

constexpr std::chrono::seconds kPatience{10};

}  // namespace

Visit::Visit(VisitorSettings settings, std::string_view program)
    : program_(program), status_(kNotAsExpected), house_(context_, std::move(settings), *this) {}

int Visit::run() {
  const StopSignals signals(
      context_, [this] { leave(); }, [this] { context_.stop(); });
  house_.start();
  context_.run();
  return status_;
}

void Visit::awaitAnswer() {
  patience_.in(kPatience, [this] { fail("the server does not answer"); });
}

void Visit::beAnswered() {
  isAnswered_ = true;
  patience_.cancel();
}

void Visit::leave() {
  patience_.cancel();
  house_.bye();
}

void Visit::fail(std::string_view why) {
  if (!std::exchange(hasFailed_, true)) tell(why);
  leave();
}

void Visit::onLoggedOn() {
  awaitAnswer();
  ask();
}

void Visit::onEnd(PlayerEnd end, std::string_view why) {
  patience_.cancel();
  if (end != PlayerEnd::Left && end != PlayerEnd::Drained) {
    status_ = statusOf(end, why, program_);
  } else if (isAnswered_ && !hasFailed_) {
    status_ = kInOrder;
  } else if (end == PlayerEnd::Drained && !hasFailed_) {
    tell("the server has ended before it answered");
  }
  context_.stop();
}

void Visit::tell(std::string_view text) const {
  std::string line(text);
  std::replace(line.begin(), line.end(), '\n', ' ');
  fmt::print(stderr, "{}: {}\n", program_, escaped(line));
}

}  // namespace poker::holdem

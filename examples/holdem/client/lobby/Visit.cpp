#include <examples/holdem/client/lobby/Visit.h>

#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/terminal/Text.h>

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace poker::holdem {

namespace {

constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::seconds kBetweenLooks{1};

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

void Visit::write(std::string_view text) {
  if (hasFailed_) return;
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return;
  const int failure = errno;
  if (failure != EPIPE) return fail(fmt::format("cannot write the output: {}", std::strerror(failure)));
  hasFailed_ = true;  // who has read enough need not be told
  leave();
}

void Visit::leaveWithReader() {
  pollfd output{STDOUT_FILENO, 0, 0};
  if (poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0) {
    hasFailed_ = true;
    return leave();
  }
  look_.in(kBetweenLooks, [this] { leaveWithReader(); });
}

void Visit::leave() {
  patience_.cancel();
  look_.cancel();
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

void addVisitor(CLI::App& app, VisitorSettings& player, std::string& passwordFile) {
  addHouse(app, player, passwordFile);
  app.footer(
      "To log on ends another session of the same account, also one that plays.\n"
      "Without --password-file the password is asked for; where there is no terminal,\n"
      "--register makes an account whose password nobody knows.");
}

}  // namespace poker::holdem

#include <examples/holdem/client/terminal/LineReader.h>

#include <asio/buffer.hpp>
#include <asio/post.hpp>

#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace poker::holdem {

namespace {

constexpr std::size_t kLongestLine = 4096;  // what is longer is no line of a person

/// A descriptor that may be made non-blocking. A terminal is opened anew: the one that is there is the output too, which
/// would lose what it cannot take at once.
int openInput() {
  const char* terminal = isatty(STDIN_FILENO) != 0 ? ttyname(STDIN_FILENO) : nullptr;
  const int input = terminal != nullptr ? open(terminal, O_RDONLY | O_NOCTTY | O_CLOEXEC) : dup(STDIN_FILENO);
  if (input < 0) throw std::runtime_error("there is no standard input");
  return input;
}

}  // namespace

LineReader::LineReader(asio::io_context& context, Line line, End end)
    : input_(context, openInput()),
      flags_(fcntl(input_.native_handle(), F_GETFL)),
      line_(std::move(line)),
      end_(std::move(end)) {
  read();
}

LineReader::~LineReader() { fcntl(input_.native_handle(), F_SETFL, flags_); }

void LineReader::read() {
  input_.async_read_some(asio::buffer(buffer_), [this](const std::error_code& failure, std::size_t size) {
    if (failure == asio::error::operation_not_supported || failure == std::errc::operation_not_permitted) {
      return readFile();
    }
    if (failure) return finish();
    take({buffer_.data(), size});
    read();
  });
}

/// A file is always ready, so that the event loop cannot wait for it.
void LineReader::readFile() {
  const ssize_t size = ::read(input_.native_handle(), buffer_.data(), buffer_.size());
  if (size <= 0) return finish();
  take({buffer_.data(), static_cast<std::size_t>(size)});
  asio::post(input_.get_executor(), [this] { readFile(); });
}

void LineReader::take(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    pending_ += bytes.substr(0, end);
    if (pending_.size() > kLongestLine) pending_.clear();
    if (end == std::string_view::npos) return;
    bytes.remove_prefix(end + 1);
    const std::size_t first = pending_.find_first_not_of(" \t\r");
    const std::size_t last = pending_.find_last_not_of(" \t\r");
    const std::string line = first == std::string::npos ? std::string() : pending_.substr(first, last - first + 1);
    pending_.clear();
    line_(line);
  }
}

void LineReader::finish() {
  if (!pending_.empty()) take("\n");
  end_();
}

std::optional<std::string> askPassword(std::string_view question) {
  termios before{};
  if (tcgetattr(STDIN_FILENO, &before) != 0) return std::nullopt;
  std::fprintf(stderr, "%.*s ", static_cast<int>(question.size()), question.data());
  termios silent = before;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
  std::string password;
  std::getline(std::cin, password);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
  std::fputc('\n', stderr);
  return password;
}

}  // namespace poker::holdem

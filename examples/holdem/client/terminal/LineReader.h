#pragma once

#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace poker::holdem {

/// The lines of the standard input, as they come, in the event loop: from a terminal, a pipe or a file. Must outlive the
/// run of the io_context.
class LineReader {
 public:
  using Line = std::function<void(std::string_view)>;
  using End = std::function<void()>;

  /// @param line  without its end, and without blanks around it
  /// @param end   no more lines come
  LineReader(asio::io_context& context, Line line, End end);
  /// Leaves the input as it was found.
  ~LineReader();
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

 private:
  void read();
  void readFile();
  void take(std::string_view bytes);
  void finish();

  asio::posix::stream_descriptor input_;
  int flags_;
  Line line_;
  End end_;
  std::array<char, 1024> buffer_{};
  std::string pending_;
};

/// Asks for a password without echo.
/// @return nothing when the standard input is no terminal
std::optional<std::string> askPassword(std::string_view question);

}  // namespace poker::holdem

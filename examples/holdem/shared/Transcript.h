#pragma once

#include <CommandProcessor/core/Catalogue.h>

#include <fmt/color.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

namespace poker::holdem {

/// A conversation for a person to follow: a line a command, with the time since the beginning, the connection, the
/// direction, the class, the size, the fields and the bytes. Secrets appear neither in the fields nor in the bytes, and
/// what a peer wrote is escaped. One thread.
class Transcript {
 public:
  /// Writes the head line. Lines are flushed one by one.
  Transcript(std::FILE* out, bool colour);

  /// @param connection  its number
  /// @param bytes       the whole frame, length slot included; it need not be a command
  void frame(std::int32_t connection, CommandDirection direction, std::span<const std::uint8_t> bytes);
  /// What happened to a connection beside its commands.
  void remark(std::int32_t connection, std::string_view text);
  /// As above for what should not happen.
  void trouble(std::int32_t connection, std::string_view text);
  /// What happened to the whole server.
  void heading(std::string_view text);

 private:
  std::string paint(const fmt::text_style& style, std::string_view text) const;
  std::string lead(std::int32_t connection) const;
  std::string hexBytes(std::span<const std::uint8_t> bytes, bool hideFields) const;
  void write(const std::string& line) const;

  std::FILE* out_;
  bool colour_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  bool narrow_;  // the terminal is
  std::size_t fieldsColumn_;
  std::size_t fieldsWidth_;
  std::size_t mostBytes_;  // of a frame
};

}  // namespace poker::holdem

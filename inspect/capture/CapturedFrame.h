#pragma once

#include <CommandProcessor/core/Catalogue.h>
#include <inspect/capture/NetworkEnd.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace poker {

/// One finished buffer as it travelled, and what is known of its way. What it points to is valid until whoever hands it
/// out is asked for the next one.
struct CapturedFrame {
  /// Length slot, type code, family, fields. Less than its length slot says when `problem` tells why.
  std::span<const std::uint8_t> bytes = {};
  std::uint64_t number = 0;  ///< of the frame in its input, from 1
  /// Of its first byte: in the stream; in the file, for captures that the server wrote; in its direction's stream of
  /// its connection, for captures of TCP.
  std::uint64_t offset = 0;
  std::optional<std::int64_t> time = {};           ///< nanoseconds since 1970-01-01 UTC
  std::optional<CommandDirection> direction = {};  ///< in which it travelled, where the input tells
  std::string_view connection = {};                ///< the client's end, "127.0.0.1:50001"; empty: not known
  std::string_view table = {};    ///< the capture's interface, which is a table's name; empty: not known
  std::uint64_t hand = 0;         ///< the number of the hand that the server played there then; 0: none, or not known
  std::string_view problem = {};  ///< why this is no whole frame; empty when it is one
};

/// Where a connection runs. All zeros: not known.
struct FrameEnds {
  NetworkEnd client;
  NetworkEnd server;
};

/// Where frames come from, one after the other. One thread at a time.
class FrameSource {
 public:
  virtual ~FrameSource() = default;

  /// The next frame, also one with a `problem`.
  /// @return false at the end
  /// @throws std::runtime_error  the input cannot be read
  virtual bool next(CapturedFrame& frame) = 0;

  /// Bytes of input consumed, and how many there are where that is known: for a display of progress.
  virtual std::uint64_t position() const = 0;
  virtual std::optional<std::uint64_t> size() const = 0;
};

}  // namespace poker

#pragma once

#include <inspect/capture/NetworkEnd.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace poker::cmdproc {

/// A segment of a TCP connection.
struct Segment {
  NetworkEnd from, to;
  std::uint32_t sequence = 0;  ///< of the first byte of the payload, or of the SYN
  bool syn = false, ack = false, fin = false, rst = false;
  std::vector<std::uint8_t> payload;
};

/// Whether packets of that link type (libpcap's DLT_ number) can be taken apart.
bool isKnownLink(int linkType);

/// Takes a packet apart; nothing when it is no TCP over IP, or damaged.
std::optional<Segment> segmentIn(int linkType, std::span<const std::uint8_t> packet);

}  // namespace poker::cmdproc

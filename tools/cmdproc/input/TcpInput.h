#pragma once

#include <inspect/capture/CapturedFrame.h>
#include <tools/cmdproc/input/Bytes.h>

#include <cstdint>
#include <memory>

namespace poker::cmdproc {

/// Opens a capture of plain TCP, pcap or pcapng: Ethernet, Linux cooked, loopback or raw IP. Both directions of each
/// connection are put together, whatever came late, twice or overlapping, and cut into frames, which come in the order in
/// which they became whole. Batches are handed out as they are. Who the client is tells the first class that only one
/// side sends.
///
/// A connection that is no commands is passed over with one line on standard error. One whose begin is not in the capture
/// is followed from its first whole command on. Where bytes are missing in the middle, a frame without bytes says so in
/// its `problem`, and the first whole command behind the hole comes next.
///
/// Memory for a connection: what it has sent out of order, up to a few megabytes, and one frame each way.
/// @param file          read from its begin; a copy is made of what is no regular file
/// @param longestFrame  a length slot above it is not believed
/// @throws std::runtime_error  the input cannot be read, or is of another kind of link
std::unique_ptr<FrameSource> openTcpCapture(std::unique_ptr<FileBytes> file, std::uint32_t longestFrame);

}  // namespace poker::cmdproc

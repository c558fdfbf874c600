#pragma once

#include <hostkit/Decode.h>
#include <inspect/capture/CapturedFrame.h>

#include <cstdint>
#include <span>
#include <string>

namespace poker::cmdproc {

/// Turns a frame into a command, whichever side it is for, those included that a host takes from nobody. Bytes behind
/// the last field are an error: nothing of the input is lost without a word.
/// @param frame  whole, length slot included
DecodeResult decodeFrame(std::span<const std::uint8_t> frame);

/// What is told of a frame that cannot be read: "offset 120: ClKeepAlive: CommandBuf::readNumber - bufSize == 0
/// (sequenceNumber at byte 126: takes 4 bytes, 3 are left)". Offsets are those of the input.
std::string failureText(const CapturedFrame& frame, const DecodeError& error);
/// The same for a frame that is no whole one: its problem, and where the bytes that are there cannot be read on.
std::string failureText(const CapturedFrame& frame);

}  // namespace poker::cmdproc

#pragma once

#include <inspect/capture/CapturedFrame.h>

#include <cstdint>
#include <string>

namespace poker::cmdproc {

/// "2026-11-21T22:43:24.123456789Z".
std::string timeText(std::int64_t nanosecondsSince1970);

/// When and where the frame travelled, as far as the input tells: "2026-11-21T22:43:24.123456789Z 127.0.0.1:50001 ->
/// \"Oslo\"". Empty for a frame of a stream.
std::string circumstancesText(const CapturedFrame& frame);

/// The same as members of a JSON object, without braces: "\"offset\":12,\"time\":\"...\",\"direction\":\"client to
/// server\",\"connection\":\"127.0.0.1:50001\",\"table\":\"Oslo\"".
/// @param offset  whether the offset is told also of a frame of a stream
std::string circumstancesJson(const CapturedFrame& frame, bool offset);

}  // namespace poker::cmdproc

#pragma once

#include <CommandProcessor/types/FieldJson.h>
#include <inspect/capture/CapturedFrame.h>
#include <tools/cmdproc/output/Paint.h>

#include <string>
#include <string_view>

namespace poker::cmdproc {

/// The bytes of a frame, one row a value: offset | bytes | type | value | meaning. A frame that cannot be read has its
/// rows up to the damage, then one that points at it: the field, what it would take, how many bytes are left.
/// @param frame    its bytes may be any; offsets count from its own
/// @param message  what the library said when it failed to read the frame; empty otherwise
std::string annotate(const CapturedFrame& frame, JsonSecrets secrets, const Paint& paint,
                     std::string_view message = {});

/// The line above the rows of annotate(), with a line of dashes below.
std::string annotationHead(const Paint& paint);

}  // namespace poker::cmdproc

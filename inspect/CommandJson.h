#pragma once

#include <CommandProcessor/core/PokerCommandI.h>
#include <CommandProcessor/types/FieldJson.h>

#include <string>
#include <string_view>

namespace poker {

/// A command as one JSON object on one line, without the line break:
///
///     {"command":"SrvSitError","fields":{"errorCode":0,"money":"0"},"text":"..."}
///
/// "text" is what the player reads (PlayerText.h), for classes that have such a text. Any thread.
/// @param more  further members, as they are to stand at the end: "\"offset\":12"; empty for none
std::string commandJson(const PokerCommandI& command, JsonSecrets secrets = JsonSecrets::kMask,
                        std::string_view more = {});

}  // namespace poker

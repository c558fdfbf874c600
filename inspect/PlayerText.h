#pragma once

#include <CommandProcessor/core/PokerCommandI.h>
#include <CommandProcessor/types/FieldJson.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace poker {

/// The text that a client shows to its player for a result, a reason, a notice: of classes with two texts, the one that
/// the player sees. May be empty. None for a class that has no such text. Any thread.
/// @param secrets  whether a new PIN in it stands in clear or as ***
std::optional<std::string> playerText(const PokerCommandI& command, JsonSecrets secrets = JsonSecrets::kMask);

/// A class that has a text for the player.
struct PlayerTextClass {
  std::string_view command;
  std::string_view codeField;  ///< the field that the text hangs on first of all
};

/// All of them, by name. Lives as long as the process.
std::span<const PlayerTextClass> playerTextClasses();

}  // namespace poker

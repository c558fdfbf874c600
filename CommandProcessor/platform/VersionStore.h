#pragma once

#include <CommandProcessor/platform/Export.h>

#include <cstdint>
#include <optional>

namespace poker {

/// Keeps the version of the program that the current user ran last, as the value "Last Version" under `subkey`, a path
/// of names parted by backslashes ("Vendor\\Client").
///
/// On Windows that is a 4-byte number in the registry below HKEY_CURRENT_USER, where the key must exist. Elsewhere it is a decimal number in the
/// file "Last Version" in the folder `subkey` below $XDG_CONFIG_HOME, or below $HOME/.config when that is not an
/// absolute path; folders that are missing are made, readable by the user alone, and the file is replaced in one step,
/// so that a reader sees the old version or the new one.
///
/// False, and nothing changed, when the system refuses, and for a subkey that is null, empty or (elsewhere than on
/// Windows) has an empty, "." or ".." component. May be called by any thread.
COMMANDPROCESSOR_API bool storeLastVersion(const char* subkey, std::uint32_t version);

/// Nothing when no version was stored under `subkey`, or what stands there is no version.
COMMANDPROCESSOR_API std::optional<std::uint32_t> loadLastVersion(const char* subkey);

}  // namespace poker

#include <CommandProcessor/platform/VersionStore.h>

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

namespace poker {
namespace {

constexpr const char* kValueName = "Last Version";

}  // namespace

bool storeLastVersion(const char* subkey, std::uint32_t version) {
  if (subkey == nullptr || *subkey == '\0') return false;
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, subkey, 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS) return false;
  const DWORD value = version;
  const LSTATUS result =
      RegSetValueExA(key, kValueName, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value);
  RegCloseKey(key);
  return result == ERROR_SUCCESS;
}

std::optional<std::uint32_t> loadLastVersion(const char* subkey) {
  if (subkey == nullptr || *subkey == '\0') return std::nullopt;
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, subkey, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return std::nullopt;
  DWORD value = 0;
  DWORD size = sizeof value;
  DWORD type = REG_NONE;
  const LSTATUS result = RegQueryValueExA(key, kValueName, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
  RegCloseKey(key);
  if (result != ERROR_SUCCESS || type != REG_DWORD || size != sizeof value) return std::nullopt;
  return std::uint32_t{value};
}

}  // namespace poker

#else

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace poker {
namespace {

constexpr std::string_view kFileName = "Last Version";

/// Empty when the environment names no folder of the user.
std::string configFolder() {
  const char* const configured = std::getenv("XDG_CONFIG_HOME");
  if (configured != nullptr && *configured == '/') return configured;
  const char* const home = std::getenv("HOME");
  if (home != nullptr && *home == '/') return std::string(home) + "/.config";
  return {};
}

/// The folder of `subkey`, without a slash at its end; empty when the subkey or the environment does not do.
std::string folderOf(const char* subkey) {
  if (subkey == nullptr) return {};
  std::string folder = configFolder();
  if (folder.empty()) return {};
  std::string path = subkey;
  std::replace(path.begin(), path.end(), '\\', '/');
  for (std::size_t start = 0; start <= path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    const std::string_view component = std::string_view(path).substr(start, end - start);
    if (component.empty() || component == "." || component == "..") return {};
    folder.append("/").append(component);
    start = end + 1;
  }
  return folder;
}

/// Whether the folder is there in the end shows when a file is made in it.
void makeFolders(std::string path) {
  for (std::size_t i = 1; i <= path.size(); ++i) {
    if (i < path.size() && path[i] != '/') continue;
    const std::string prefix = path.substr(0, i);
    mkdir(prefix.c_str(), S_IRWXU);
  }
}

bool writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

bool storeLastVersion(const char* subkey, std::uint32_t version) {
  const std::string folder = folderOf(subkey);
  if (folder.empty()) return false;
  makeFolders(folder);
  std::string temporary = folder + "/.version-XXXXXX";
  const std::string target = folder + "/" + std::string(kFileName);
  const int file = mkostemp(temporary.data(), O_CLOEXEC);
  if (file < 0) return false;
  bool done = writeAll(file, std::to_string(version) + "\n") && fsync(file) == 0;
  done = close(file) == 0 && done;
  done = done && std::rename(temporary.c_str(), target.c_str()) == 0;
  if (!done) unlink(temporary.c_str());
  return done;
}

std::optional<std::uint32_t> loadLastVersion(const char* subkey) {
  const std::string folder = folderOf(subkey);
  if (folder.empty()) return std::nullopt;
  const int file = open((folder + "/" + std::string(kFileName)).c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return std::nullopt;
  std::array<char, 16> text{};
  ssize_t size = 0;
  do {
    size = read(file, text.data(), text.size());
  } while (size < 0 && errno == EINTR);
  close(file);
  if (size <= 0 || static_cast<std::size_t>(size) == text.size()) return std::nullopt;  // no version is that long
  const char* const end = text.data() + size;
  std::uint32_t version = 0;
  const auto parsed = std::from_chars(text.data(), end, version);
  const std::string_view rest(parsed.ptr, static_cast<std::size_t>(end - parsed.ptr));
  if (parsed.ec != std::errc{} || !(rest.empty() || rest == "\n" || rest == "\r\n")) return std::nullopt;
  return version;
}

}  // namespace poker

#endif

// Takes the DLL in by hand, as a program does that was built without it: no header, no import library, names alone.

#include "Check.h"

#include <windows.h>

#include <cstdint>
#include <initializer_list>

namespace {

constexpr const char* kSubkey = "Software\\CommandProcessorTests\\Loader";

template <class Function>
Function* named(HMODULE library, const char* name) {
  const FARPROC found = GetProcAddress(library, name);
  CHECK(found != nullptr);
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

}  // namespace

int main() {
  CHECK(GetModuleHandleA("CommandProcessor.dll") == nullptr);
  const HMODULE library = LoadLibraryA("CommandProcessor.dll");
  CHECK(library != nullptr);

  const auto storeLastVersion = named<bool(const char*, std::uint32_t)>(library, "_ZN5poker16storeLastVersionEPKcj");
  CHECK(!storeLastVersion(kSubkey, 5));  // no such key
  HKEY key = nullptr;
  CHECK(RegCreateKeyA(HKEY_CURRENT_USER, kSubkey, &key) == ERROR_SUCCESS);
  for (const std::uint32_t version : {0u, 7u, 0xFFFFFFFFu}) {
    CHECK(storeLastVersion(kSubkey, version));
    DWORD read = 1;
    DWORD size = sizeof read;
    CHECK(RegGetValueA(HKEY_CURRENT_USER, kSubkey, "Last Version", RRF_RT_REG_DWORD, nullptr, &read, &size) ==
          ERROR_SUCCESS);
    CHECK(read == version);
  }
  RegCloseKey(key);
  CHECK(RegDeleteKeyA(HKEY_CURRENT_USER, kSubkey) == ERROR_SUCCESS);

  std::puts("dll_loader: all went well");
}

# Windows, 64 bits.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CP_MINGW x86_64-w64-mingw32)
set(CP_MINGW_UNWIND_DLL libgcc_s_seh-1.dll)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw.cmake)

# Where Wine is installed, what is built runs here: without a display, with a registry of the build's own.
find_program(CP_WINE NAMES wine64 wine HINTS /usr/lib/wine)
mark_as_advanced(CP_WINE)
if(CP_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR env --unset=DISPLAY WINEPREFIX=${CMAKE_BINARY_DIR}/wine WINEDEBUG=-all
                                    WINEDLLOVERRIDES=mscoree,mshtml= ${CP_WINE})
endif()

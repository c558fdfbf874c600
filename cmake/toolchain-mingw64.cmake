# Windows programs and DLLs of 64 bits, built on Debian with mingw-w64 (scripts/setup windows installs it).
# The -posix compilers bring std::thread, std::mutex and std::condition_variable.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Where Wine is installed, what is built runs here.
find_program(CP_WINE NAMES wine64 wine)
if(CP_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CP_WINE})
endif()

# Windows programs and DLLs, built on Debian with mingw-w64 (scripts/setup windows installs it). What the two widths
# share; toolchain-mingw64.cmake and toolchain-mingw32.cmake say which.
# The -posix compilers bring std::thread, std::mutex and std::condition_variable.
set(CMAKE_SYSTEM_NAME Windows)

set(CMAKE_C_COMPILER ${CP_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${CP_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${CP_MINGW}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${CP_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CP_FOREIGN ON)

# What every program of such a build loads beside our own DLLs; put into bin/, which then can be taken to a Windows
# machine as it is.
set(CP_RUNTIME_DLLS libstdc++-6.dll libwinpthread-1.dll zlib1.dll ${CP_MINGW_UNWIND_DLL})

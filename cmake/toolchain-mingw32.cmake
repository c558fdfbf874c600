# Windows, 32 bits. Built here and not run: Wine without its 32-bit part says that all went well and runs nothing.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CP_MINGW i686-w64-mingw32)
set(CP_MINGW_UNWIND_DLL libgcc_s_dw2-1.dll)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw.cmake)

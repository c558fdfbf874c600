# Linux programs for 64-bit Arm, built on Debian and run under qemu-user (scripts/setup aarch64 installs both, and unpacks
# the libraries of that machine in build/sysroot-aarch64).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

cmake_path(SET CP_SYSROOT NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-aarch64)
set(CMAKE_FIND_ROOT_PATH ${CP_SYSROOT} /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CP_FOREIGN ON)

find_program(CP_QEMU qemu-aarch64)
mark_as_advanced(CP_QEMU)
if(CP_QEMU)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CP_QEMU} -L /usr/aarch64-linux-gnu)
endif()

# Linux programs of 32 bits, built and run on a 64-bit Debian (scripts/setup m32 installs what that needs).
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)

# The kernel's headers are the 64-bit system's: Debian brings those of 32 bits in a package that would drive out the cross
# compilers. They are the same files.
set(CMAKE_CXX_FLAGS_INIT "-m32 -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_C_FLAGS_INIT "${CMAKE_CXX_FLAGS_INIT}")

set(CMAKE_LIBRARY_PATH /usr/lib32)
set(CP_FOREIGN ON)

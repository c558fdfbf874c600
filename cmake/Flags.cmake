# What all targets of ours have in common. Plain variables reach this folder and those below it, never a parent project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(PROJECT_IS_TOP_LEVEL)
  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Kind of build" FORCE)
  endif()
  # Programs in bin/, libraries in lib/; on Windows the DLLs land beside the programs that need them.
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
  foreach(dll IN LISTS CP_RUNTIME_DLLS) # the compiler's own, named by the toolchain file
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
                    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    file(COPY ${file} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
  endforeach()
  if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
    find_program(CCACHE_PROGRAM ccache)
    mark_as_advanced(CCACHE_PROGRAM)
    if(CCACHE_PROGRAM)
      set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
    endif()
  endif()
endif()

# Without this the compiler copies a double from memory to memory through a register of the old x86 arithmetic, which makes
# a quiet NaN of a signalling one: values that must pass bit for bit would not. 32-bit Windows demands SSE2 anyway.
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "86|AMD64" AND CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  add_compile_options(-msse2 -mfpmath=sse)
endif()

# Warnings are ours alone: link this target PRIVATE, and no user of the library inherits a flag.
add_library(cp_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  # Without -Wnon-virtual-dtor on purpose: commands go back to their pool and are never deleted through the interface.
  target_compile_options(cp_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                               $<$<BOOL:${CP_WERROR}>:-Werror>)
elseif(MSVC)
  target_compile_options(cp_warnings INTERFACE /W4 /permissive- $<$<BOOL:${CP_WERROR}>:/WX>)
endif()

if(CP_SANITIZE)
  add_compile_options(-fsanitize=${CP_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${CP_SANITIZE} -fno-sanitize-recover=all)
  if(CP_SANITIZE MATCHES "undefined" AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # ccache knows the option's text and not the file's: the name that it sees changes with the file's content.
    set(ignore_list ${PROJECT_SOURCE_DIR}/cmake/sanitizer-ignore.txt)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ignore_list})
    file(SHA256 ${ignore_list} hash)
    string(SUBSTRING ${hash} 0 8 hash)
    file(COPY_FILE ${ignore_list} ${PROJECT_BINARY_DIR}/sanitizer-ignore-${hash}.txt ONLY_IF_DIFFERENT)
    add_compile_options(-fsanitize-ignorelist=${PROJECT_BINARY_DIR}/sanitizer-ignore-${hash}.txt)
  endif()
endif()

option(CP_COVERAGE "Count which lines and branches run, with g++'s counters" OFF)
if(CP_COVERAGE)
  add_compile_options(--coverage -fno-inline -fprofile-update=atomic)
  add_link_options(--coverage)
  # Behind what a folder's own options say: an optimizer moves and joins branches.
  target_compile_options(cp_warnings INTERFACE -O0)
endif()

# What a shared library of ours adds: every symbol must be found when it is linked, not when it is loaded; and the
# library calls its own exported functions directly, which lets the compiler inline them.
function(cp_shared_library target)
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(WIN32) # CommandProcessor.dll, whichever compiler made it
    set_target_properties(${target} PROPERTIES PREFIX "")
  endif()
  # clang leaves the sanitizer's own symbols open in a shared library; the program brings them.
  if(NOT (CP_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
    include(CheckLinkerFlag)
    check_linker_flag(CXX -Wl,--no-undefined CP_LINKER_HAS_NO_UNDEFINED)
    if(CP_LINKER_HAS_NO_UNDEFINED)
      target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
  endif()
endfunction()

# -fno-semantic-interposition for the sources of a shared library, where the compiler knows it.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fno-semantic-interposition CP_HAS_NO_SEMANTIC_INTERPOSITION)
add_library(cp_own_symbols INTERFACE)
if(CP_HAS_NO_SEMANTIC_INTERPOSITION)
  target_compile_options(cp_own_symbols INTERFACE -fno-semantic-interposition)
endif()

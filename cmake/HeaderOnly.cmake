# cp_header_only(name PROBE header FOLDERS entry...)
#
# A third-party library of which we use the headers alone, as the INTERFACE target cp_<name>. When we build for another
# system the headers of this one are good enough, but its include folder as a whole is not (it would bring this system's
# C library along): then the target's include folder holds links to the named entries and nothing else.
function(cp_header_only name)
  cmake_parse_arguments(arg "" "PROBE" "FOLDERS" ${ARGN})
  find_path(CP_${name}_INCLUDE_DIR ${arg_PROBE} NO_CMAKE_FIND_ROOT_PATH PATHS /usr/include)
  mark_as_advanced(CP_${name}_INCLUDE_DIR)
  if(NOT CP_${name}_INCLUDE_DIR)
    message(FATAL_ERROR "The header <${arg_PROBE}> was not found. scripts/setup build installs what the build needs.")
  endif()
  set(root ${CP_${name}_INCLUDE_DIR})
  if(CMAKE_CROSSCOMPILING)
    set(root ${PROJECT_BINARY_DIR}/third-party/${name})
    file(MAKE_DIRECTORY ${root})
    foreach(entry IN LISTS arg_FOLDERS)
      file(CREATE_LINK ${CP_${name}_INCLUDE_DIR}/${entry} ${root}/${entry} SYMBOLIC)
    endforeach()
  endif()
  add_library(cp_${name} INTERFACE)
  target_include_directories(cp_${name} SYSTEM INTERFACE $<BUILD_INTERFACE:${root}>)
endfunction()

# A forbidden include does not compile: each module has an include root of its own, <build>/layers/<module>, that holds
# one symbolic link, CommandProcessor/<module>, to the module's folder. A module's sources get their own root and the
# roots of the modules that they may see, and nothing else of ours. scripts/check-layers states the same rules over the
# text of the includes (and a few more that no include path can express); change both together.

# cp_layer_root(<variable> <name> <folder>): the include root under which <folder>, relative to the repository, is seen
# alone. Where the system has no symbolic links this is the repository's root, and scripts/check-layers stands alone.
function(cp_layer_root variable name folder)
  set(root ${PROJECT_BINARY_DIR}/layers/${name})
  cmake_path(GET folder PARENT_PATH parent)
  file(MAKE_DIRECTORY ${root}/${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${root}/${folder} SYMBOLIC RESULT result)
  if(NOT result EQUAL 0)
    message(STATUS "No symbolic links here (${result}): includes between layers are not fenced for ${folder}")
    set(root ${PROJECT_SOURCE_DIR})
  endif()
  set(${variable} ${root} PARENT_SCOPE)
endfunction()

# cp_module(<name> [SEES <module>] SOURCES <source>...): the module CommandProcessor/<name> as OBJECT library cp_<name>.
# It sees the named module and all that that one sees.
function(cp_module name)
  cmake_parse_arguments(arg "" "SEES" "SOURCES" ${ARGN})
  cp_layer_root(root ${name} CommandProcessor/${name})
  add_library(cp_${name} OBJECT ${arg_SOURCES})
  target_include_directories(cp_${name} PUBLIC ${root})
  target_compile_definitions(cp_${name} PRIVATE COMMANDPROCESSOR_BUILDING)
  target_link_libraries(cp_${name} PRIVATE cp_warnings cp_own_symbols Threads::Threads)
  if(arg_SEES)
    target_link_libraries(cp_${name} PUBLIC cp_${arg_SEES})
  endif()
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    # __FILE__ and the debugger name the real file, not the link to it.
    target_compile_options(cp_${name} PRIVATE -ffile-prefix-map=${PROJECT_BINARY_DIR}/layers/${name}/=${PROJECT_SOURCE_DIR}/)
  endif()
endfunction()

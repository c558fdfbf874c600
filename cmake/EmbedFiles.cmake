# cp_embed_files(<target> <file>...): makes the files' contents a part of the target, which finds them by their names
# without folder (tools/cmdproc/embedded/EmbeddedFiles.h). Done when the build is configured; a changed file configures
# it again.
function(cp_embed_files target)
  set(rows)
  foreach(file IN LISTS ARGN)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    cmake_path(GET file FILENAME name)
    file(READ ${file} text)
    string(APPEND rows "    {\"${name}\", R\"~~~~(${text})~~~~\"},\n")
  endforeach()
  # What replaces @rows@ is not looked through for further @names@.
  configure_file(${PROJECT_SOURCE_DIR}/cmake/EmbeddedFiles.cpp.in ${CMAKE_CURRENT_BINARY_DIR}/EmbeddedFiles.cpp @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/EmbeddedFiles.cpp)
endfunction()

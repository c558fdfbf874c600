# cp_compile_fail_test(<source> LINK <target>...)
#
# A test that a source does not compile, and for the reason it states: the source carries a line
#     // expect-error: <regular expression>
# and the compiler's output must match it. A source that fails for another reason (a renamed header, say) fails the test.
# The source is no part of the build; the test builds it with the flags and include folders of the named targets.
function(cp_compile_fail_test source)
  cmake_parse_arguments(arg "" "" "LINK" ${ARGN})
  cmake_path(GET source STEM name)
  add_library(compile_fail_${name} OBJECT EXCLUDE_FROM_ALL ${source})
  target_link_libraries(compile_fail_${name} PRIVATE ${arg_LINK})
  add_test(NAME compile_fail.${name}
           COMMAND ${CMAKE_COMMAND} -D BUILD=${PROJECT_BINARY_DIR} -D TARGET=compile_fail_${name} -D SOURCE=${source}
                   -P ${PROJECT_SOURCE_DIR}/cmake/ExpectCompileError.cmake)
  # Two builds in one build folder would get in each other's way.
  set_tests_properties(compile_fail.${name} PROPERTIES RESOURCE_LOCK build_folder TIMEOUT 300)
endfunction()

# cp_layer_fence_test(<module> <forbidden folder>...)
#
# Part of the build: a source that compiles exactly when CommandProcessor/<module> sees its own headers and those of none
# of the forbidden folders. It probes every header there by name, with the include folders of the module's own sources.
function(cp_layer_fence_test module)
  set(text "// Written by the build: what ${module} may see.\n")
  file(GLOB own CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/CommandProcessor/${module}/*.h)
  list(GET own 0 header)
  string(APPEND text "#if !__has_include(<${header}>)\n#error \"${module} does not see its own <${header}>\"\n#endif\n")
  foreach(folder IN LISTS ARGN)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    foreach(header IN LISTS headers)
      string(APPEND text "#if __has_include(<${header}>)\n#error \"${module} sees <${header}>\"\n#endif\n")
    endforeach()
  endforeach()
  set(source ${CMAKE_CURRENT_BINARY_DIR}/layer_fence_${module}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "${text}" @ONLY)
  add_library(layer_fence_${module} OBJECT ${source})
  target_link_libraries(layer_fence_${module} PRIVATE cp_${module})
endfunction()

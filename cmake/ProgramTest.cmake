# cp_program_test(NAME <name> TARGET <target> | PROGRAM <file> PRINTS <regular expression> [ARGUMENTS <word>...]
#                 [TIMEOUT <seconds>] [ENVIRONMENT <variable=value>...])
#
# A test that runs a program as a whole, under the emulator of the machine that it was built for, and believes it only
# when it ends with 0 *and* has printed what it prints when it did its work: an emulator can fail without saying so.
# Where nothing here runs programs of that machine there is no test.

function(cp_program_test)
  cmake_parse_arguments(arg "" "NAME;TARGET;PROGRAM;PRINTS;TIMEOUT" "ARGUMENTS;ENVIRONMENT" ${ARGN})
  if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    message(STATUS "Built, not run: nothing here runs programs for ${CMAKE_SYSTEM_NAME} on ${CMAKE_SYSTEM_PROCESSOR}: ${arg_NAME}")
    return()
  endif()
  if(arg_TARGET)
    set(arg_PROGRAM $<TARGET_FILE:${arg_TARGET}>)
  endif()
  add_test(NAME ${arg_NAME}
           COMMAND ${CMAKE_COMMAND} -D "PRINTS=${arg_PRINTS}" -P ${PROJECT_SOURCE_DIR}/cmake/RunProgram.cmake --
                   ${CMAKE_CROSSCOMPILING_EMULATOR} ${arg_PROGRAM} ${arg_ARGUMENTS})
  set_tests_properties(${arg_NAME} PROPERTIES TIMEOUT ${arg_TIMEOUT} ENVIRONMENT "${arg_ENVIRONMENT}")
endfunction()

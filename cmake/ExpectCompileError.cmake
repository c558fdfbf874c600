# Run by cp_compile_fail_test: builds TARGET in BUILD, which must fail with the error that SOURCE states.
file(STRINGS ${SOURCE} expectation REGEX "^// expect-error: ")
if(NOT expectation)
  message(FATAL_ERROR "${SOURCE} does not say which error it expects: // expect-error: <regular expression>")
endif()
string(REGEX REPLACE "^// expect-error: *" "" expectation "${expectation}")

execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD} --target ${TARGET}
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
  message(FATAL_ERROR "${SOURCE} compiles, and must not")
elseif(NOT output MATCHES "error: [^\n]*(${expectation})")
  message(FATAL_ERROR "${SOURCE} fails, but without an error that matches \"${expectation}\":\n${output}")
endif()

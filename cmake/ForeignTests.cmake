# GoogleTest for a machine whose own is not installed here, from the sources that Debian brings (package googletest).
set(CP_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest's sources, for builds whose machine is not this one")
set(folder ${CP_GOOGLETEST_SOURCE})
if(EXISTS ${folder}/googlemock/src/gmock-all.cc)
  add_library(cp_googletest STATIC ${folder}/googletest/src/gtest-all.cc ${folder}/googlemock/src/gmock-all.cc)
  target_include_directories(cp_googletest SYSTEM PUBLIC ${folder}/googletest/include ${folder}/googlemock/include
                                           PRIVATE ${folder}/googletest ${folder}/googlemock)
  target_link_libraries(cp_googletest PUBLIC Threads::Threads)
  add_library(GTest::gmock ALIAS cp_googletest)
  add_library(cp_googletest_main STATIC ${folder}/googletest/src/gtest_main.cc)
  target_link_libraries(cp_googletest_main PUBLIC cp_googletest)
  add_library(GTest::gtest_main ALIAS cp_googletest_main)
endif()

find_package(GTest REQUIRED)
include(GoogleTest)

# typelark_test(NAME SOURCES ... LIBRARIES ... [PROPERTIES ...])
#
# Every TEST becomes a test of CTest and so runs in a process of its own: function-local statics
# live as long as the process, and there are no reset functions.
function(typelark_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;PROPERTIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tests/support)
  target_link_libraries(${name} PRIVATE typelark-options ${ARG_LIBRARIES}
    GTest::gtest GTest::gmock GTest::gtest_main)
  gtest_discover_tests(${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 60 ${ARG_PROPERTIES})
endfunction()

find_package(GTest REQUIRED)
include(GoogleTest)

# The headers that most tests include, compiled once for all of them. Their objects have to be compiled like those of an
# executable.
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/test-headers.cpp CONTENT "")
add_library(test-headers OBJECT ${CMAKE_CURRENT_BINARY_DIR}/test-headers.cpp)
target_compile_options(test-headers PRIVATE -fPIE)
target_link_libraries(test-headers PRIVATE typelark-options GTest::gtest GTest::gmock)
target_precompile_headers(test-headers PRIVATE
  <gmock/gmock.h> <gtest/gtest.h> <algorithm> <filesystem> <fstream> <functional> <sstream> <string> <vector>)

# typelark_test(NAME SOURCES ... LIBRARIES ... [PROPERTIES ...])
#
# Makes every TEST a test of CTest, which runs it in a process of its own: function-local statics live as long as the
# process, and there are no reset functions.
function(typelark_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;PROPERTIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES} ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tests/support/TestMain.cpp)
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tests/support)
  target_link_libraries(${name} PRIVATE typelark-options ${ARG_LIBRARIES}
    GTest::gtest GTest::gmock)
  target_precompile_headers(${name} REUSE_FROM test-headers)
  set_target_properties(${name} PROPERTIES UNITY_BUILD OFF)
  set(objective_sources ${ARG_SOURCES})
  list(FILTER objective_sources INCLUDE REGEX "\\.mm$")
  set_source_files_properties(${objective_sources} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  gtest_discover_tests(${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 60 ${ARG_PROPERTIES})
endfunction()

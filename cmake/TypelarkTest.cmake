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

# Tests that read the process list get one of their own where the system allows it. Where it doesn't, they run one at a
# time. `own_process_list` precedes the command of such a test, `process_list_properties` belong to the test.
set(own_process_list "")
set(process_list_properties "")
# Cocoa's list of running applications is the tests' own.
if(TYPELARK_PLATFORM STREQUAL Linux)
  set(own_process_list ${PROJECT_SOURCE_DIR}/tests/own-process-list)
  execute_process(COMMAND ${own_process_list} true RESULT_VARIABLE result ERROR_VARIABLE error)
  if(NOT result EQUAL 0)
    string(STRIP "${error}" error)
    message(NOTICE "This system gives tests no process list of their own (${error}). "
      "Tests that start the font manager's process can fail while other checkouts do so, too.")
    set(own_process_list "")
    set(process_list_properties RESOURCE_LOCK process-list)
  endif()
endif()

# typelark_test(NAME SOURCES ... LIBRARIES ... [READS_PROCESS_LIST] [PROPERTIES ...])
#
# Makes every TEST a test of CTest, which runs it in a process of its own: function-local statics live as long as the
# process, and there are no reset functions.
function(typelark_test name)
  cmake_parse_arguments(ARG "READS_PROCESS_LIST" "" "SOURCES;LIBRARIES;PROPERTIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tests/support)
  target_link_libraries(${name} PRIVATE typelark-options ${ARG_LIBRARIES}
    GTest::gtest GTest::gmock GTest::gtest_main)
  target_precompile_headers(${name} REUSE_FROM test-headers)
  set_target_properties(${name} PROPERTIES UNITY_BUILD OFF)
  set(objective_sources ${ARG_SOURCES})
  list(FILTER objective_sources INCLUDE REGEX "\\.mm$")
  set_source_files_properties(${objective_sources} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  if(ARG_READS_PROCESS_LIST)
    if(own_process_list)
      set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR ${own_process_list})
    endif()
    list(APPEND ARG_PROPERTIES ${process_list_properties})
  endif()
  gtest_discover_tests(${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 60 ${ARG_PROPERTIES})
endfunction()

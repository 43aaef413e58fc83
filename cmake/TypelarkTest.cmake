# GoogleTest for macOS is built from its sources where there is no Mac.
if(APPLE AND NOT CMAKE_HOST_APPLE)
  set(googletest /usr/src/googletest)
  if(NOT EXISTS ${googletest})
    message(FATAL_ERROR "The tests for macOS need the Debian package googletest, which is missing.\n"
      "./dev setup installs it.")
  endif()
  add_library(gtest STATIC
    ${googletest}/googletest/src/gtest-all.cc ${googletest}/googlemock/src/gmock-all.cc)
  set(include ${googletest}/googletest/include ${googletest}/googlemock/include)
  target_include_directories(gtest SYSTEM PUBLIC ${include} PRIVATE ${googletest}/googletest ${googletest}/googlemock)
  target_link_libraries(gtest PRIVATE typelark-unoptimized)
  add_library(GTest::gtest ALIAS gtest)
  add_library(GTest::gmock ALIAS gtest)
elseif(CMAKE_HOST_APPLE)
  find_package(GTest)
  if(NOT GTest_FOUND)
    message(NOTICE "Only the bundle is tested, since GoogleTest isn't there: brew install googletest")
    return()
  endif()
else()
  find_package(GTest REQUIRED)
endif()
include(GoogleTest)

# The main function of the tests, and the headers that most of them include, compiled once for all. Its objects have to be
# compiled like those of an executable.
add_library(test-main OBJECT ${CMAKE_CURRENT_LIST_DIR}/../tests/support/TestMain.cpp)
target_compile_options(test-main PRIVATE -fPIE)
target_link_libraries(test-main PRIVATE typelark-options typelark-unoptimized GTest::gtest GTest::gmock)
target_precompile_headers(test-main PRIVATE
  <gmock/gmock.h> <gtest/gtest.h> <algorithm> <filesystem> <fstream> <functional> <sstream> <string> <vector>)

# typelark_test(NAME SOURCES ... LIBRARIES ... [PROPERTIES ...])
#
# Makes every TEST a test of CTest, which runs it in a process of its own: function-local statics live as long as the
# process, and there are no reset functions.
function(typelark_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;PROPERTIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tests/support)
  target_link_libraries(${name} PRIVATE
    typelark-options typelark-unoptimized test-main ${ARG_LIBRARIES} GTest::gtest GTest::gmock)
  target_precompile_headers(${name} REUSE_FROM test-main)
  set_target_properties(${name} PROPERTIES UNITY_BUILD ${TYPELARK_UNITY_BUILD})
  set(objective_sources ${ARG_SOURCES})
  list(FILTER objective_sources INCLUDE REGEX "\\.mm$")
  set_source_files_properties(${objective_sources} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  # Only a Mac can run those for macOS, and ask them for their names.
  if(CMAKE_CROSSCOMPILING AND APPLE)
    return()
  endif()
  gtest_discover_tests(${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 60 ${ARG_PROPERTIES})
endfunction()

# Defines what every target shares: warnings, sanitizers, the linker, and the kind of library that the tree consists of.

set(TYPELARK_SANITIZE "" CACHE STRING "Value for -fsanitize=, empty for none")
option(TYPELARK_FUZZ "Build the fuzz targets with libFuzzer (needs Clang)" OFF)
option(TYPELARK_UNITY_BUILD "Compile a target that doesn't ship as one unit" ON)
set(CMAKE_UNITY_BUILD_BATCH_SIZE 0)

if(APPLE)
  set(TYPELARK_PLATFORM Mac)
else()
  set(TYPELARK_PLATFORM Linux CACHE STRING "The platform whose halves to build: Linux, or Mac against GNUstep")
endif()

add_library(typelark-options INTERFACE)
target_compile_options(typelark-options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(TYPELARK_SANITIZE)
  # Without "function": modules and programs that share no header have types of their own for the same functions.
  target_compile_options(typelark-options INTERFACE
    -fsanitize=${TYPELARK_SANITIZE} $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function> -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(typelark-options INTERFACE -fsanitize=${TYPELARK_SANITIZE})
endif()
# A Mac keeps symbols beside what ships, not in it.
if(APPLE)
  target_compile_options(typelark-options INTERFACE -g)
endif()

# Stand-ins and tests build fast instead of running fast.
add_library(typelark-unoptimized INTERFACE)
target_compile_options(typelark-unoptimized INTERFACE $<$<CONFIG:Release>:-O0>)

# lld links several times faster than the default linker. It can't optimize GCC's objects across units.
find_program(TYPELARK_LLD ld.lld)
if(TYPELARK_LLD AND NOT APPLE)
  set(across_units $<AND:$<CONFIG:Release>,$<BOOL:$<TARGET_PROPERTY:INTERPROCEDURAL_OPTIMIZATION_RELEASE>>>)
  target_link_options(typelark-options INTERFACE $<$<NOT:${across_units}>:-fuse-ld=lld>)
endif()

# typelark_optimize_across_units(TARGET)
#
# For the plug-in and what measures it. GCC's objects also hold machine code, for tests that link them without.
function(typelark_optimize_across_units target)
  set_target_properties(${target} PROPERTIES INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
  target_compile_options(${target} PRIVATE $<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU>>:-ffat-lto-objects>)
endfunction()

# typelark_object_library(NAME [SHIPS] SOURCES ... INCLUDES ... LIBRARIES ...)
#
# Adds an object library. From an archive the linker would drop the static objects that nothing refers to, and they have to
# be built at load. With SHIPS it is a part of the plug-in, whose units are joined only with CMAKE_UNITY_BUILD.
function(typelark_object_library name)
  cmake_parse_arguments(ARG "SHIPS" "" "SOURCES;INCLUDES;LIBRARIES" ${ARGN})
  add_library(${name} OBJECT ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${ARG_INCLUDES})
  target_link_libraries(${name} PUBLIC typelark-options ${ARG_LIBRARIES})
  if(ARG_SHIPS)
    typelark_optimize_across_units(${name})
  else()
    set_target_properties(${name} PROPERTIES UNITY_BUILD ${TYPELARK_UNITY_BUILD})
  endif()
endfunction()

# Gives the macOS halves Cocoa. On macOS it is the real one. Elsewhere it is GNUstep, an independent implementation of
# Foundation and AppKit. `tests/cocoa-support` adds CoreFoundation, with headers under their names of macOS.

add_library(cocoa INTERFACE)

if(APPLE)
  # CMake sets Clang's standard itself. An option of ours would lose to it.
  set(CMAKE_OBJC_STANDARD 11)
  set(CMAKE_OBJCXX_STANDARD ${CMAKE_CXX_STANDARD})
  foreach(language OBJC OBJCXX)
    set(CMAKE_${language}_STANDARD_REQUIRED ON)
    set(CMAKE_${language}_EXTENSIONS OFF)
    enable_language(${language})
  endforeach()
  target_compile_options(cocoa INTERFACE $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fno-objc-arc>)
  target_link_libraries(cocoa INTERFACE "-framework Cocoa" "-framework CoreServices")
else()
  # Name the missing packages before CMake tests the compilers: its own errors say less.
  set(missing_packages "")
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-prog-name=cc1objplus
    OUTPUT_VARIABLE objcxx OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    message(FATAL_ERROR "The macOS halves are built with GCC where there is no Cocoa, not with ${CMAKE_CXX_COMPILER_ID}")
  elseif(NOT EXISTS "${objcxx}")
    list(APPEND missing_packages gobjc++)
  endif()
  find_program(GNUSTEP_CONFIG gnustep-config)
  find_path(GNUSTEP_HEADERS Cocoa/Cocoa.h PATH_SUFFIXES GNUstep)
  if(NOT GNUSTEP_CONFIG OR NOT GNUSTEP_HEADERS)
    list(APPEND missing_packages libgnustep-gui-dev)
  endif()
  file(GLOB gnustep_backends /usr/lib/GNUstep/Bundles/libgnustep-back-*.bundle)
  if(NOT gnustep_backends)
    list(APPEND missing_packages gnustep-back0.29-cairo)
  endif()
  find_program(XVFB Xvfb)
  find_program(XVFB_RUN xvfb-run)
  if(NOT XVFB OR NOT XVFB_RUN)
    list(APPEND missing_packages xvfb)
  endif()
  find_program(XAUTH xauth)
  if(NOT XAUTH)
    list(APPEND missing_packages xauth)
  endif()
  if(missing_packages)
    list(JOIN missing_packages " " missing_packages)
    message(FATAL_ERROR "The macOS halves need Debian packages that are missing: ${missing_packages}\n"
      "./dev setup installs them.")
  endif()

  set(CMAKE_OBJC_COMPILER ${CMAKE_C_COMPILER})
  set(CMAKE_OBJCXX_COMPILER ${CMAKE_CXX_COMPILER})
  enable_language(OBJC)
  enable_language(OBJCXX)

  # Leave out GNUstep's choice of warnings and optimization, and its folders of headers that don't exist.
  function(gnustep_flags kind pattern variable)
    execute_process(COMMAND ${GNUSTEP_CONFIG} --${kind} OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE
      COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(flags UNIX_COMMAND "${flags}")
    list(FILTER flags INCLUDE REGEX "${pattern}")
    set(${variable} ${flags} PARENT_SCOPE)
  endfunction()
  gnustep_flags(objc-flags "^-(D|f|pthread)" compile_flags)
  gnustep_flags(gui-libs "^-l" libraries)
  # CMake doesn't know GCC's standards of these languages.
  target_compile_options(cocoa INTERFACE "$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${compile_flags}>"
    $<$<COMPILE_LANGUAGE:OBJC>:-std=c11> $<$<COMPILE_LANGUAGE:OBJCXX>:-std=c++${CMAKE_CXX_STANDARD}>)
  target_include_directories(cocoa SYSTEM INTERFACE
    ${PROJECT_SOURCE_DIR}/tests/cocoa-support/include ${GNUSTEP_HEADERS})
  # The plug-in's module leaves CoreFoundation's symbols undefined: the process gives them to it, as on macOS.
  # `cocoa-support` precedes GNUstep's libraries, so that it replaces functions of theirs that differ from macOS.
  target_link_libraries(cocoa INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:cocoa-support> ${libraries})
endif()

foreach(language OBJC OBJCXX)
  set(CMAKE_${language}_VISIBILITY_PRESET hidden)
endforeach()

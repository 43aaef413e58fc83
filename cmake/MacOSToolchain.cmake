# Builds for macOS on Debian: Clang, lld and libc++ 14, against the declarations and the linker stubs in
# platform/macos-sdk.

set(llvm /usr/lib/llvm-14)

# The packages that are missing, before CMake's own test of the compilers fails with less to say.
set(packages clang lld llvm libc++-14-dev)
set(files bin/clang bin/ld64.lld bin/llvm-lipo include/c++/v1/string)
set(missing_packages "")
foreach(package file IN ZIP_LISTS packages files)
  if(NOT EXISTS ${llvm}/${file})
    list(APPEND missing_packages ${package})
  endif()
endforeach()
if(missing_packages)
  list(JOIN missing_packages " " missing_packages)
  message(FATAL_ERROR "The bundle for macOS needs Debian packages that are missing: ${missing_packages}\n"
    "./dev setup installs them.")
endif()

set(CMAKE_SYSTEM_NAME Darwin)
cmake_path(SET CMAKE_OSX_SYSROOT NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../platform/macos-sdk)
set(CMAKE_OSX_ARCHITECTURES x86_64 arm64)
set(CMAKE_OSX_DEPLOYMENT_TARGET 10.15)

# The compiler joins the architectures with what it takes for Apple's lipo.
set(tools ${CMAKE_BINARY_DIR}/macos-tools)
file(MAKE_DIRECTORY ${tools})
file(CREATE_LINK ${llvm}/bin/llvm-lipo ${tools}/lipo SYMBOLIC)

foreach(language C CXX OBJC OBJCXX)
  set(CMAKE_${language}_COMPILER ${llvm}/bin/clang)
  set(CMAKE_${language}_COMPILER_TARGET x86_64-apple-darwin)
  set(CMAKE_${language}_FLAGS_INIT -B${tools})
endforeach()
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER ${llvm}/bin/clang++)
  string(APPEND CMAKE_${language}_FLAGS_INIT " -stdlib=libc++ -isystem ${CMAKE_OSX_SYSROOT}/usr/include/c++/v1")
endforeach()
# CMake knows this option of Apple's own Clang only.
set(CMAKE_OBJCXX_COMPILE_OPTIONS_VISIBILITY_INLINES_HIDDEN -fvisibility-inlines-hidden)
set(CMAKE_INSTALL_NAME_TOOL ${llvm}/bin/llvm-install-name-tool)
foreach(kind EXE MODULE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT -fuse-ld=lld)
endforeach()

# Debian's headers of utfcpp. They are beside those of Debian's own architecture, where CMake doesn't look for macOS.
file(GLOB utf8cpp_DIR /usr/lib/*/cmake/utf8cpp)

# Nothing built here can run, and macOS has the threads in its C library.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_HAVE_LIBC_PTHREAD TRUE)

# The bundle as After Effects on macOS loads it: a module with an Info.plist and a resource that names the entry point.

set(TYPELARK_PACKAGING_TOOLS "" CACHE PATH
  "Folder of Rez, codesign, xattr and dsymutil. On a Mac they are found without it; elsewhere the bundle lacks their part without it.")

# typelark_plugin_bundle(TARGET RESOURCES)
#
# Makes the module TARGET the bundle TARGET.plugin. RESOURCES is the folder of Info.plist.in and TARGET.r.
function(typelark_plugin_bundle target resources)
  set_target_properties(${target} PROPERTIES
    BUNDLE ON
    BUNDLE_EXTENSION plugin
    MACOSX_BUNDLE_INFO_PLIST ${resources}/Info.plist.in)
  # The version in Info.plist is the project's.
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS
    ${resources}/Info.plist.in ${PROJECT_SOURCE_DIR}/CMakeLists.txt)
  if(CMAKE_HOST_APPLE OR TYPELARK_PACKAGING_TOOLS)
    typelark_package(${target} ${resources})
  else()
    message(NOTICE "${target}.plugin is built without its resource, symbols and signature: Rez, dsymutil and codesign are macOS's.")
  endif()
endfunction()

# Gives the bundle what the linker doesn't: the resource, the symbols and the signature.
function(typelark_package target resources)
  find_program(CODESIGN codesign HINTS ${TYPELARK_PACKAGING_TOOLS} REQUIRED)
  find_program(DSYMUTIL dsymutil HINTS ${TYPELARK_PACKAGING_TOOLS} REQUIRED)
  find_program(XATTR xattr HINTS ${TYPELARK_PACKAGING_TOOLS} REQUIRED)
  set(bundle $<TARGET_BUNDLE_DIR:${target}>)

  if(AE_SDK_PATH)
    find_program(REZ Rez HINTS ${TYPELARK_PACKAGING_TOOLS} REQUIRED)
    set(system ${CMAKE_OSX_SYSROOT})
    # From CMake 4 on it is empty where the compiler finds the system by itself.
    if(NOT IS_ABSOLUTE "${system}")
      execute_process(COMMAND xcrun --sdk macosx --show-sdk-path
        OUTPUT_VARIABLE system OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    endif()
    set(make_resource
      COMMAND ${CMAKE_COMMAND} -E make_directory ${bundle}/Contents/Resources
      COMMAND ${REZ} -useDF -d __MACH__ -isysroot ${system}
        -i ${AE_SDK_PATH}/Examples/Resources -i ${AE_SDK_PATH}/Examples/Headers
        -o ${bundle}/Contents/Resources/${target}.rsrc ${resources}/${target}.r)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${resources}/${target}.r)
  else()
    # Said by the build too: the configuration's messages are long gone when the host doesn't list the plug-in.
    set(reason "${target}.plugin has no resource, so After Effects won't load it: the resource's types come with the After Effects SDK. Set AE_SDK_PATH to the folder that holds Examples.")
    message(NOTICE "${reason}")
    set(make_resource
      COMMAND ${CMAKE_COMMAND} -E rm -f ${bundle}/Contents/Resources/${target}.rsrc
      COMMAND ${CMAKE_COMMAND} -E echo ${reason})
  endif()

  # Optimization across units makes the machine code in the linker, in a temporary file that dsymutil reads the symbols
  # from. In a folder each architecture keeps its own.
  set(optimized ${CMAKE_CURRENT_BINARY_DIR}/${target}-optimized)
  file(MAKE_DIRECTORY ${optimized})
  target_link_options(${target} PRIVATE LINKER:-object_path_lto,${optimized})
  add_custom_command(TARGET ${target} POST_BUILD
    ${make_resource}
    COMMAND ${DSYMUTIL} $<TARGET_FILE:${target}> -o ${bundle}.dSYM
    # codesign refuses files with some extended attributes, such as those of a download.
    COMMAND ${XATTR} -cr ${bundle}
    # Sign last: the signature covers the resource, and arm64 runs nothing unsigned.
    COMMAND ${CODESIGN} --force --options runtime --sign - ${bundle}
    VERBATIM)
endfunction()

# The bundle as After Effects on macOS loads it: a module with an Info.plist and a resource that names the entry point.

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
  if(CMAKE_HOST_APPLE)
    typelark_plugin_resource_and_signature(${target} ${resources})
  else()
    target_link_libraries(${target} PRIVATE macos-sdk)
    message(NOTICE "${target}.plugin is built without its resource and without a signature: Rez and codesign are macOS's.")
  endif()
endfunction()

function(typelark_plugin_resource_and_signature target resources)
  set(resource_types "${AE_SDK_PATH}/Examples/Resources")
  if(NOT EXISTS "${resource_types}/AE_General.r")
    message(FATAL_ERROR "${target}.plugin needs the types of the host's resources, which come with the After Effects SDK. "
      "Set AE_SDK_PATH to the folder that holds Examples/Resources/AE_General.r (it is '${AE_SDK_PATH}' now): "
      "cmake -DAE_SDK_PATH=/path/to/sdk ...")
  endif()
  find_program(REZ Rez REQUIRED)
  find_program(CODESIGN codesign REQUIRED)

  set(bundle $<TARGET_BUNDLE_DIR:${target}>)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${bundle}/Contents/Resources
    COMMAND ${REZ} -useDF -d __MACH__ -i ${resource_types} -i ${AE_SDK_PATH}/Examples/Headers
      -o ${bundle}/Contents/Resources/${target}.rsrc ${resources}/${target}.r
    # Sign last: the signature covers the resource, and arm64 runs nothing unsigned.
    COMMAND ${CODESIGN} --force --options runtime --sign - ${bundle}
    VERBATIM)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${resources}/${target}.r)
endfunction()

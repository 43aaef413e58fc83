# Defines
#
#   AegpHost::aegp-host  the program
#   AegpHost::interface  the headers of the host's interface
#   AegpHost::desktop    windows and running applications, for a plug-in that watches the host's dialogs
#   aegp_host_test       see below

include(${CMAKE_CURRENT_LIST_DIR}/AegpHostTargets.cmake)

# aegp_host_test(NAME PLUGIN TARGET [SESSIONS FILE...] [OPTIONS OPTION...])
#
# Adds the test NAME: aegp-host plays the session files with the module TARGET, or validates it if no file is named.
# Files are relative to the current source folder. The options are those of `aegp-host run` and `aegp-host validate`.
function(aegp_host_test name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "PLUGIN" "SESSIONS;OPTIONS")
  if(ARG_UNPARSED_ARGUMENTS OR ARG_KEYWORDS_MISSING_VALUES OR NOT TARGET "${ARG_PLUGIN}")
    message(FATAL_ERROR "aegp_host_test(NAME PLUGIN TARGET [SESSIONS FILE...] [OPTIONS OPTION...])")
  endif()
  if(ARG_SESSIONS)
    set(arguments run --quiet ${ARG_OPTIONS} --plugin $<TARGET_FILE:${ARG_PLUGIN}> ${ARG_SESSIONS})
  else()
    set(arguments validate ${ARG_OPTIONS} $<TARGET_FILE:${ARG_PLUGIN}>)
  endif()
  add_test(NAME ${name} COMMAND AegpHost::aegp-host ${arguments} WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
endfunction()

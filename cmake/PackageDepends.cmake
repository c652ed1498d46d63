# Run by cpack. The program loads WebKit by itself, so dpkg-shlibdeps cannot see that it needs it: this finds the
# version that brought the newest of the functions called, from the same list of symbols that dpkg-shlibdeps reads.
# The jsc_ functions are in a library of which WebKit's package wants exactly its own version.
set(package libwebkitgtk-6.0-4)
execute_process(COMMAND dpkg-query --control-show ${package} symbols
                OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS ${CPACK_CORVEL_WEB_CALLS} calls REGEX "\\(webkit_")
set(newest 0)
foreach(call IN LISTS calls)
  string(REGEX REPLACE ".*\\(([a-z0-9_]+),.*" "\\1" name "${call}")
  if(NOT symbols MATCHES "\n ${name}@Base ([0-9.]+)")
    message(FATAL_ERROR "${package} has no ${name}")
  endif()
  if(CMAKE_MATCH_1 VERSION_GREATER newest)
    set(newest ${CMAKE_MATCH_1})
  endif()
endforeach()
if(newest STREQUAL 0)
  message(FATAL_ERROR "no calls of WebKit in ${CPACK_CORVEL_WEB_CALLS}: build the program first")
endif()
string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", ${package} (>= ${newest})")

# Run by cpack. Some libraries the program loads by itself (LateLibraries.cpp), so dpkg-shlibdeps cannot see that it
# needs them: this adds the packages they name themselves, and for WebKit, which names its newest version, the version
# that brought the newest of the functions called, from the list of symbols that dpkg-shlibdeps reads. The jsc_ functions
# are in a library of which WebKit's package wants exactly its own version.
set(webkit libwebkitgtk-6.0-4)

function(control_file package file variable)
  execute_process(COMMAND dpkg-query --control-show ${package} ${file}
                  OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

foreach(library IN LISTS CPACK_CORVEL_LATE_LIBRARIES)
  get_filename_component(file ${library} REALPATH)
  execute_process(COMMAND dpkg-query --search ${file} OUTPUT_VARIABLE owner COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "^([^:]+):.*" "\\1" package "${owner}")
  control_file(${package} shlibs names)
  if(NOT names MATCHES "^[^ ]+ [^ ]+ (${package}[^\n]*)\n")
    message(FATAL_ERROR "${package} does not say what a program needs of it")
  endif()
  string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", ${CMAKE_MATCH_1}")
endforeach()

control_file(${webkit} symbols symbols)
file(STRINGS ${CPACK_CORVEL_WEB_CALLS} calls REGEX "\\(webkit_")
set(newest 0)
foreach(call IN LISTS calls)
  string(REGEX REPLACE ".*\\(([a-z0-9_]+),.*" "\\1" name "${call}")
  if(NOT symbols MATCHES "\n ${name}@Base ([0-9.]+)")
    message(FATAL_ERROR "${webkit} has no ${name}")
  endif()
  if(CMAKE_MATCH_1 VERSION_GREATER newest)
    set(newest ${CMAKE_MATCH_1})
  endif()
endforeach()
if(newest STREQUAL 0)
  message(FATAL_ERROR "no calls of WebKit in ${CPACK_CORVEL_WEB_CALLS}: build the program first")
endif()
string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", ${webkit} (>= ${newest})")

# cmake -DNM=... -DOBJECTS=... -DOUTPUT=... -P WebCalls.cmake
# Lists the functions of WebKit that the objects call, one CORVEL_WEB_CALL(name, index) a line.
execute_process(COMMAND ${NM} --undefined-only --format=just-symbols ${OBJECTS}
                OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "(webkit|jsc)_[a-z0-9_]+" names "${symbols}")
list(REMOVE_DUPLICATES names)
list(SORT names)
set(index 0)
set(lines "")
foreach(name IN LISTS names)
  string(APPEND lines "CORVEL_WEB_CALL(${name}, ${index})\n")
  math(EXPR index "${index} + 1")
endforeach()
file(WRITE ${OUTPUT} "${lines}")

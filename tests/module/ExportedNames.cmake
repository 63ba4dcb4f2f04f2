# Compares what the library exports with the list of what it is to export. Run with -DNM=, -DLIBRARY= and -DEXPECTED=.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${NM} --dynamic --demangle --defined-only --format=posix ${LIBRARY}
  OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
# An entry is a name, one letter for its kind, its address and its size.
string(REGEX REPLACE " [A-Za-z] [0-9a-f]+( [0-9a-f]+)?\n" "\n" names "${output}")
string(STRIP "${names}" names)
string(REPLACE "\n" ";" names "${names}")
list(SORT names)

file(STRINGS ${EXPECTED} expected)
list(SORT expected)

set(missing ${expected})
list(REMOVE_ITEM missing ${names})
set(surplus ${names})
list(REMOVE_ITEM surplus ${expected})
if(missing OR surplus)
  list(JOIN missing "\n  " missing)
  list(JOIN surplus "\n  " surplus)
  message(FATAL_ERROR "The exported names differ from ${EXPECTED}.\nNot exported:\n  ${missing}\nNot to be exported:\n  ${surplus}")
endif()

# Compares what the library exports with the lists of what it is to export. Run with -DLIBRARY=, -DEXPECTED= and, for a
# Windows library, -DOBJDUMP= and -DCXXFILT=, for others -DNM=.
cmake_minimum_required(VERSION 3.25)

if(DEFINED OBJDUMP)
  execute_process(COMMAND ${OBJDUMP} --private-headers ${LIBRARY} COMMAND ${CXXFILT}
    OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  # The table of names ends with an empty line; an entry is an ordinal in brackets and a name.
  string(REGEX REPLACE "^.*\n\\[Ordinal/Name Pointer\\] Table\n" "" names "${output}")
  string(REGEX REPLACE "\n\n.*$" "\n" names "${names}")
  string(REGEX REPLACE "\t\\[ *[0-9]+\\] " "" names "${names}")
else()
  execute_process(COMMAND ${NM} --dynamic --demangle --defined-only --format=posix ${LIBRARY}
    OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  # An entry is a name, one letter for its kind, its address and its size.
  string(REGEX REPLACE " [A-Za-z] [0-9a-f]+( [0-9a-f]+)?\n" "\n" names "${output}")
  # Not every nm puts a blank between two brackets that close.
  string(REPLACE ">>" "> >" names "${names}")
  string(REPLACE ">>" "> >" names "${names}")
endif()
string(STRIP "${names}" names)
string(REPLACE "\n" ";" names "${names}")
list(SORT names)

set(expected)
foreach(list IN LISTS EXPECTED)
  file(STRINGS ${list} more)
  list(APPEND expected ${more})
endforeach()

set(missing ${expected})
list(REMOVE_ITEM missing ${names})
set(surplus ${names})
list(REMOVE_ITEM surplus ${expected})
if(missing OR surplus)
  list(JOIN missing "\n  " missing)
  list(JOIN surplus "\n  " surplus)
  list(JOIN EXPECTED ", " lists)
  message(FATAL_ERROR "The exported names differ from ${lists}.\nNot exported:\n  ${missing}\nNot to be exported:\n  ${surplus}")
endif()

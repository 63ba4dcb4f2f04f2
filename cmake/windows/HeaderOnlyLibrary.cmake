# Header-only libraries are the same for every system. Each is linked into a folder of its own, so that the build sees it
# and nothing else of the build machine's headers.
#
#   header_only_library(TARGET ENTRY)
#
# ENTRY is the file or folder below /usr/include that makes up the library.
function(header_only_library target entry)
  if(TARGET ${target})
    return()
  endif()
  set(source /usr/include/${entry})
  if(NOT EXISTS ${source})
    message(FATAL_ERROR "${source} is missing: install the Debian package that brings it.")
  endif()
  string(MAKE_C_IDENTIFIER ${target} folder)
  set(include_dir ${CMAKE_BINARY_DIR}/header-only/${folder})
  file(MAKE_DIRECTORY ${include_dir})
  file(CREATE_LINK ${source} ${include_dir}/${entry} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED)
  target_include_directories(${target} SYSTEM INTERFACE ${include_dir})
endfunction()

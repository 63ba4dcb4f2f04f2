# Sources that an npm package carries, in ${CMAKE_BINARY_DIR}/FOLDER/package; fetched once.
#
#   npm_sources(FOLDER PACKAGE VERSION SHA512 PATTERN)
#
# SHA512 is that of the package as it is published; PATTERN says what of it is wanted.
function(npm_sources folder package version sha512 pattern)
  set(dir ${CMAKE_BINARY_DIR}/${folder})
  if(EXISTS ${dir}/package)
    return()
  endif()
  set(archive ${dir}/${package}-${version}.tgz)
  find_program(NPM npm REQUIRED)
  file(MAKE_DIRECTORY ${dir})
  execute_process(COMMAND ${NPM} pack --silent ${package}@${version}
    WORKING_DIRECTORY ${dir} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(SHA512 ${archive} fetched)
  if(NOT fetched STREQUAL sha512)
    file(REMOVE ${archive})
    message(FATAL_ERROR "${package} ${version} is not what it was: its digest is ${fetched}.")
  endif()
  # What stands under its final name is whole.
  file(REMOVE_RECURSE ${dir}/unpacked)
  file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${dir}/unpacked PATTERNS ${pattern})
  file(RENAME ${dir}/unpacked/package ${dir}/package)
endfunction()

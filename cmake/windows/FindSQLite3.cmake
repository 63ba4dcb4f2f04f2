# SQLite for Windows is compiled from its amalgamation, which an npm package carries.
set(sqlite_package better-sqlite3)
set(sqlite_package_version 12.11.1)
set(sqlite_package_sha512
  76af40b40a608393c616d0733c54819771d94231e893981a40233ace1d989346929830acd426e7548f3f1e001242434ab16169b1e20ef5b7a0e71c696216c87c)
set(SQLite3_VERSION 3.53.2)

set(sqlite_dir ${CMAKE_BINARY_DIR}/sqlite)
set(sqlite_sources ${sqlite_dir}/package/deps/sqlite3)
set(sqlite_archive ${sqlite_dir}/${sqlite_package}-${sqlite_package_version}.tgz)

if(NOT EXISTS ${sqlite_sources}/sqlite3.c)
  find_program(NPM npm REQUIRED)
  file(MAKE_DIRECTORY ${sqlite_dir})
  execute_process(COMMAND ${NPM} pack --silent ${sqlite_package}@${sqlite_package_version}
    WORKING_DIRECTORY ${sqlite_dir} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(SHA512 ${sqlite_archive} fetched)
  if(NOT fetched STREQUAL sqlite_package_sha512)
    file(REMOVE ${sqlite_archive})
    message(FATAL_ERROR "${sqlite_package} ${sqlite_package_version} is not what it was: its digest is ${fetched}.")
  endif()
  # What stands under its final name is whole.
  file(ARCHIVE_EXTRACT INPUT ${sqlite_archive} DESTINATION ${sqlite_dir}/unpacked PATTERNS package/deps/sqlite3/*)
  file(REMOVE_RECURSE ${sqlite_dir}/package)
  file(RENAME ${sqlite_dir}/unpacked/package ${sqlite_dir}/package)
endif()

if(NOT TARGET SQLite::SQLite3)
  add_library(sqlite3 STATIC ${sqlite_sources}/sqlite3.c)
  target_compile_definitions(sqlite3 PRIVATE SQLITE_THREADSAFE=1)
  target_compile_options(sqlite3 PRIVATE -O2 -w)
  target_include_directories(sqlite3 SYSTEM PUBLIC ${sqlite_sources})
  add_library(SQLite::SQLite3 ALIAS sqlite3)
endif()
set(SQLite3_FOUND TRUE)

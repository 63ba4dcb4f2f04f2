# SQLite for Windows is compiled from its amalgamation, which an npm package carries.
include(NpmSources)
npm_sources(sqlite better-sqlite3 12.11.1
  76af40b40a608393c616d0733c54819771d94231e893981a40233ace1d989346929830acd426e7548f3f1e001242434ab16169b1e20ef5b7a0e71c696216c87c
  package/deps/sqlite3/*)
set(SQLite3_VERSION 3.53.2)

if(NOT TARGET SQLite::SQLite3)
  set(sqlite_sources ${CMAKE_BINARY_DIR}/sqlite/package/deps/sqlite3)
  add_library(sqlite3 STATIC ${sqlite_sources}/sqlite3.c)
  target_compile_definitions(sqlite3 PRIVATE SQLITE_THREADSAFE=1)
  target_compile_options(sqlite3 PRIVATE -O2 -w)
  target_include_directories(sqlite3 SYSTEM PUBLIC ${sqlite_sources})
  add_library(SQLite::SQLite3 ALIAS sqlite3)
endif()
set(SQLite3_FOUND TRUE)

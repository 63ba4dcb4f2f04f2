# GoogleTest is compiled with the tests, from the sources that Debian packages.
if(NOT TARGET gtest)
  set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
  set(BUILD_GMOCK ON)
  set(INSTALL_GTEST OFF)
  set(gtest_disable_pthreads ON)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endif()
set(GTest_FOUND TRUE)

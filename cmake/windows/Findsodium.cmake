# libsodium for Windows is compiled from its sources, which an npm package carries; without their configure script, which
# would look at the build machine.
include(NpmSources)
npm_sources(sodium sodium-native 2.4.9
  99b922c80d9c9727f003238523332fb15ea7cb62ab28422115501227159fb2681f504ca680b212d8c2c71dc18840c92b70a84f12b45a311e43cefd04127f815a
  package/libsodium/*)

if(NOT TARGET sodium::sodium)
  set(sodium_sources ${CMAKE_BINARY_DIR}/sodium/package/libsodium/src/libsodium)
  set(VERSION 1.0.17)
  set(SODIUM_LIBRARY_VERSION_MAJOR 10)
  set(SODIUM_LIBRARY_VERSION_MINOR 2)
  configure_file(${sodium_sources}/include/sodium/version.h.in ${sodium_sources}/include/sodium/version.h @ONLY)
  file(GLOB_RECURSE sodium_files ${sodium_sources}/*.c)
  add_library(sodium STATIC ${sodium_files})
  target_compile_definitions(sodium
    PRIVATE CONFIGURED=1 NATIVE_LITTLE_ENDIAN=1 HAVE_TI_MODE=1
    PUBLIC SODIUM_STATIC)
  target_compile_options(sodium PRIVATE -O2 -w)
  target_include_directories(sodium SYSTEM
    PUBLIC ${sodium_sources}/include
    PRIVATE ${sodium_sources}/include/sodium)
  add_library(sodium::sodium ALIAS sodium)
endif()
set(sodium_FOUND TRUE)

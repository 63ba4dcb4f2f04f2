# `cpack --preset release` makes a zip of what is installed and of what that needs at run time. Unzipped anywhere, all of it
# finds each other from where it lies.
string(TOLOWER ${CMAKE_SYSTEM_NAME} system)
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME MultiEntity.Native)
set(CPACK_PACKAGE_FILE_NAME MultiEntity.Native-${PROJECT_VERSION}-${system}-x86_64)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_CMAKE_PROJECTS
  "${PROJECT_BINARY_DIR};${PROJECT_NAME};ALL;/;${PROJECT_BINARY_DIR};${PROJECT_NAME};bundled;/")

# What a system of its own package management has already, and what is of others.
function(bundle)
  install(FILES ${ARGN} COMPONENT bundled EXCLUDE_FROM_ALL)
endfunction()

# The licences of what is compiled in or bundled, as the packages that it comes from tell them.
function(bundle_licence name debian_package)
  bundle(/usr/share/doc/${debian_package}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR}/third-party RENAME ${name}.txt)
endfunction()

bundle_licence(CLI11 libcli11-dev)
bundle_licence(fmt libfmt-dev)
bundle_licence(nlohmann-json nlohmann-json3-dev)
bundle_licence(tomlplusplus libtomlplusplus-dev)
bundle_licence(sqlite libsqlite3-dev)
bundle_licence(libsodium libsodium-dev)
bundle_licence(unicode unicode-data)

if(MINGW)
  bundle_licence(gcc-runtime gcc-mingw-w64-base)
  bundle_licence(winpthreads mingw-w64-x86-64-dev)
  bundle(/usr/share/common-licenses/GPL-3 DESTINATION ${CMAKE_INSTALL_DOCDIR}/third-party RENAME GPL-3.txt)
elseif(UNIX)
  # Under the names by which programs ask for them.
  file(REAL_PATH ${SQLite3_LIBRARY} sqlite)
  bundle(${sqlite} DESTINATION ${CMAKE_INSTALL_LIBDIR} RENAME libsqlite3.so.0)
  file(REAL_PATH ${sodium_LIBRARY} sodium)
  bundle(${sodium} DESTINATION ${CMAKE_INSTALL_LIBDIR} RENAME libsodium.so.23)
endif()

include(CPack)

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/MultiEntityNative)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/MultiEntityNative)

install(TARGETS MultiEntityNative multientity_host multientity_host_helpers
  EXPORT MultiEntityNativeTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY MultiEntity.Native/include/MultiEntity DESTINATION ${header_dir} FILES_MATCHING PATTERN "*.h")
install(DIRECTORY host/MultiEntityHost host_helpers/MultiEntityHostHelpers
  DESTINATION ${header_dir} FILES_MATCHING PATTERN "*.h")
install(FILES CHANGELOG.md LICENSE README.md THIRD-PARTY.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples/embedding examples/exchange DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

# On Windows, the C++ runtime that the library shares with its host.
set(runtime_library_names)
if(WIN32)
  install(FILES ${MULTIENTITY_RUNTIME_LIBRARIES} DESTINATION ${CMAKE_INSTALL_BINDIR})
  set(runtime_library_names MultiEntity.Native.dll)
  foreach(library IN LISTS MULTIENTITY_RUNTIME_LIBRARIES)
    cmake_path(GET library FILENAME name)
    list(APPEND runtime_library_names ${name})
  endforeach()
endif()

install(EXPORT MultiEntityNativeTargets NAMESPACE MultiEntity:: DESTINATION ${package_dir})
configure_package_config_file(cmake/MultiEntityNativeConfig.cmake.in
  ${PROJECT_BINARY_DIR}/MultiEntityNativeConfig.cmake INSTALL_DESTINATION ${package_dir})
# Hosts and library share records and virtual tables, so another major version is another interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MultiEntityNativeConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MultiEntityNativeConfig.cmake
              ${PROJECT_BINARY_DIR}/MultiEntityNativeConfigVersion.cmake
  DESTINATION ${package_dir})

if(TARGET multientity)
  file(RELATIVE_PATH library_from_program ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  # Built with the paths with which it is installed, as CMake would else lengthen those of the build by an empty one, which
  # stands for the current folder. In the build the library lies beside the program.
  set_target_properties(multientity PROPERTIES
    BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN;$ORIGIN/${library_from_program}")
  install(TARGETS multientity RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  # What shells and man know of the commands, as the program itself tells it.
  if(UNIX)
    set(told_dir ${PROJECT_BINARY_DIR}/told)
    install(CODE "
      file(MAKE_DIRECTORY \"${told_dir}\")
      foreach(what IN ITEMS man \"completion bash\" \"completion zsh\")
        separate_arguments(words UNIX_COMMAND \"\${what}\")
        string(REPLACE \" \" \"-\" name \"\${what}\")
        execute_process(COMMAND \"$<TARGET_FILE:multientity>\" \${words} OUTPUT_FILE \"${told_dir}/\${name}\"
          COMMAND_ERROR_IS_FATAL ANY)
      endforeach()")
    install(FILES ${told_dir}/man DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 RENAME multientity.1)
    install(FILES ${told_dir}/completion-bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
      RENAME multientity)
    install(FILES ${told_dir}/completion-zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions RENAME _multientity)
  endif()
  # Looked for beside the program.
  install(TARGETS AddinBridge
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()

# Exceptions and texts cross from library to program, so that all of them share one C++ runtime. Its libraries lie beside
# them, where Windows looks first.
set(MULTIENTITY_RUNTIME_LIBRARIES)
foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(NOT IS_ABSOLUTE ${file})
    message(FATAL_ERROR "${CMAKE_CXX_COMPILER} has no ${name}.")
  endif()
  file(COPY ${file} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
  list(APPEND MULTIENTITY_RUNTIME_LIBRARIES ${file})
endforeach()

# add_exported_names_test(NAME TARGET LIST...): the library of that target exports the names in the lists and no others.
function(add_exported_names_test name target)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ OUTPUT_VARIABLE lists)
  if(WIN32)
    find_program(MULTIENTITY_CXXFILT NAMES x86_64-w64-mingw32-c++filt c++filt)
    set(tools -DOBJDUMP=${CMAKE_OBJDUMP} -DCXXFILT=${MULTIENTITY_CXXFILT})
  else()
    set(tools -DNM=${CMAKE_NM})
  endif()
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND}
    ${tools} -DLIBRARY=$<TARGET_FILE:${target}> "-DEXPECTED=${lists}"
    -P ${PROJECT_SOURCE_DIR}/tests/module/ExportedNames.cmake)
endfunction()

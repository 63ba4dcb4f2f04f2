# Read by ctest, after the list of the tests.
if(windows_app_tests)
  set_tests_properties(${windows_app_tests} PROPERTIES LABELS "stage;windows")
endif()

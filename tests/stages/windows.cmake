# With the files of Wine that ./test makes, and the program of the release beside the one for Windows.
set(work ${PROJECT_SOURCE_DIR}/build)
set(both_programs ${work}/release/bin/multientity ${scripts}/windows-multientity.sh)
foreach(job IN ITEMS main-job bill-life exchange bookkeeper)
  add_stage_test(windows.${job} windows 900 ${scripts}/compare-plays.sh ${both_programs} ${work}/plays ${job})
  list(APPEND started windows.${job})
endforeach()
add_stage_test(windows.company_files windows 1800 ${scripts}/exchange-company-files.sh ${both_programs} ${work}/company-files)
# Each of two partners on the system of the other one.
add_stage_test(windows.alder_on_windows windows 600 ${CMAKE_COMMAND} -E env BIRCHS_PROGRAM=${work}/release/bin/multientity
  ${scripts}/play-exchange.sh ${scripts}/windows-multientity.sh ${work}/alder-on-windows)
add_stage_test(windows.birch_on_windows windows 600
  ${CMAKE_COMMAND} -E env BIRCHS_PROGRAM=${scripts}/windows-multientity.sh
  ${scripts}/play-exchange.sh ${work}/release/bin/multientity ${work}/birch-on-windows)
add_stage_test(windows.leftovers windows 300 ${scripts}/check-windows-leftovers.sh)
set_tests_properties(windows.leftovers PROPERTIES
  DEPENDS "${started};windows.company_files;windows.alder_on_windows;windows.birch_on_windows")
add_stage_test(install.windows install 1800 ${scripts}/check-install.sh windows)

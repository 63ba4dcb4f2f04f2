set(work ${PROJECT_SOURCE_DIR}/build)
# Who asks for more histories by MODEL_ARGUMENTS gives them the time by MODEL_SECONDS.
add_stage_test(model model 1800+MODEL_SECONDS sh -c "exec \"$0\" $MODEL_ARGUMENTS" ${programs}/model_check)
add_stage_test(valgrind valgrind 1800
  valgrind --quiet --leak-check=full --show-leak-kinds=definite,indirect --errors-for-leak-kinds=definite,indirect
  --error-exitcode=9 ${programs}/model_check --processes 4 --histories 20)
add_stage_test(crash crash 1800 ${programs}/crash)
add_stage_test(crash.partners crash 1800 ${programs}/partner_kills)
add_stage_test(partners.1 partners 1800 ${programs}/partner_check --seed 1 --histories 500)
add_stage_test(partners.2 partners 1800 ${programs}/partner_check --seed 100001 --histories 500 --restores)
use_all_processors(model valgrind crash crash.partners)

add_stage_test(instructions.plans instructions 300
  ${scripts}/compare-plans.sh ${programs}/multientity_bench ${PROJECT_SOURCE_DIR}/bench/plans.txt)
add_stage_test(instructions.both_sides instructions 1800 ${programs}/multientity_bench --check)
add_stage_test(instructions.own_tests instructions 300 python3 -m unittest discover -s scripts -p "*_test.py")
add_stage_test(instructions.counts instructions 1800
  ${scripts}/count-instructions.sh ${programs}/multientity_instructions ${PROJECT_SOURCE_DIR}/bench/instructions.txt
  ${work}/instructions)
add_stage_test(install install 1800 ${scripts}/check-install.sh release)
add_stage_test(main-job main-job 300 ${scripts}/play-main-job.sh ${programs}/multientity ${work}/main-job)
add_stage_test(bill-life bill-life 300 ${scripts}/play-bill-life.sh ${programs}/multientity ${work}/bill-life)
add_stage_test(exchange exchange 300 ${scripts}/check-quotes.sh ${programs}/multientity ${work}/exchange exchange
  ${PROJECT_SOURCE_DIR}/README.md)
add_stage_test(bookkeeper bookkeeper 300 ${scripts}/check-quotes.sh ${programs}/multientity ${work}/bookkeeper bookkeeper
  ${PROJECT_SOURCE_DIR}/docs/accountant.md)

include(GoogleTest)
# They start programs, and end them, as POSIX systems do, so that they run here and start the program there.
gtest_discover_tests(app_tests TEST_PREFIX windows.app. TEST_LIST windows_app_tests NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST
  PROPERTIES ENVIRONMENT MULTIENTITY_PROGRAM=${scripts}/windows-multientity.sh)
# Two labels do not pass through the call above, which would make the second one a property.
set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${CMAKE_CURRENT_SOURCE_DIR}/windows_app_labels.cmake)

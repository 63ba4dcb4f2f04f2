# Who asks for more histories by MODEL_ARGUMENTS gives them the time by MODEL_SECONDS.
add_stage_test(model model 1800+MODEL_SECONDS sh -c "exec \"$0\" $MODEL_ARGUMENTS" ${programs}/model_check)
add_stage_test(valgrind valgrind 1800
  valgrind --quiet --leak-check=full --show-leak-kinds=definite,indirect --errors-for-leak-kinds=definite,indirect
  --error-exitcode=9 ${programs}/model_check --processes 4 --histories 20)
add_stage_test(crash crash 1800 ${programs}/crash)
add_stage_test(partners.1 partners 300 ${programs}/partner_check --seed 1 --seconds 40)
add_stage_test(partners.2 partners 300 ${programs}/partner_check --seed 100001 --seconds 40)
use_all_processors(model valgrind crash)

include(GoogleTest)
# They start programs, and end them, as POSIX systems do, so that they run here and start the program there.
gtest_discover_tests(app_tests TEST_PREFIX windows.app. TEST_LIST windows_app_tests NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST
  PROPERTIES ENVIRONMENT MULTIENTITY_PROGRAM=${scripts}/windows-multientity.sh)
# Two labels do not pass through the call above, which would make the second one a property.
set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${CMAKE_CURRENT_SOURCE_DIR}/windows_app_labels.cmake)

# A test for each target, which has a folder of inputs to begin with.
file(GLOB targets RELATIVE ${PROJECT_SOURCE_DIR}/tests/fuzz/corpus CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/fuzz/corpus/*)
foreach(target IN LISTS targets)
  add_stage_test(fuzz.${target} fuzz 300+FUZZ_SECONDS ${scripts}/fuzz.sh ${PROJECT_BINARY_DIR} ${target})
endforeach()

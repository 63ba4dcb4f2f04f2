# The jobs that ./run plays, by the program with instruments.
set(played ${PROJECT_BINARY_DIR}/plays)
foreach(job IN ITEMS main-job bill-life exchange)
  add_stage_test(sanitize.${job} sanitize 900 ${scripts}/play-${job}.sh ${programs}/multientity ${played}/${job})
endforeach()
add_stage_test(sanitize.bookkeeper sanitize 900 ${scripts}/check-quotes.sh ${programs}/multientity ${played}/bookkeeper
  bookkeeper ${PROJECT_SOURCE_DIR}/docs/accountant.md)

# A test for each target, which has a folder of inputs to begin with.
file(GLOB targets RELATIVE ${PROJECT_SOURCE_DIR}/tests/fuzz/corpus CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/fuzz/corpus/*)
foreach(target IN LISTS targets)
  add_stage_test(fuzz.${target} fuzz 300+FUZZ_SECONDS ${scripts}/fuzz.sh ${PROJECT_BINARY_DIR} ${target})
endforeach()

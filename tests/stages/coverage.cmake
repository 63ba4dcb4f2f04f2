# Reads the counters of the test cases that have run in this tree.
add_stage_test(coverage.report coverage 300 ${scripts}/coverage.sh ${PROJECT_BINARY_DIR})

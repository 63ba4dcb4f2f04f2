# What needs the sources only; nothing is built in this tree.
add_stage_test(format format 300 ${scripts}/check-format.sh)
add_stage_test(arrows arrows 300 ${scripts}/check-includes.sh)
add_stage_test(guide install 300 ${scripts}/check-guide.sh)
add_stage_test(lint lint 3600 ${scripts}/lint.sh ${PROJECT_BINARY_DIR})
add_stage_test(mutation.own_tests mutation 300 python3 -m unittest discover -s tests/mutation -p "*_test.py")
add_stage_test(mutation.sample mutation 1800 ${scripts}/sample-mutants.sh)

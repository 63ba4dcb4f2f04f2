set(work ${PROJECT_SOURCE_DIR}/build)
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
add_stage_test(exchange exchange 300 ${scripts}/play-exchange.sh ${programs}/multientity ${work}/exchange)
add_stage_test(bookkeeper bookkeeper 300 ${scripts}/check-quotes.sh ${programs}/multientity ${work}/bookkeeper bookkeeper
  ${PROJECT_SOURCE_DIR}/docs/accountant.md)

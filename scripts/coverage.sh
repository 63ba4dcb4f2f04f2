#!/usr/bin/env bash
# Prints how much of the module its tests reach, file by file, and fails when a line, a branch or a condition that
# decides (MC/DC) is not reached. $1 is a build with clang's counters whose tests have just been run.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$1

counts=$build/coverage.profdata
llvm-profdata-19 merge "$build"/profile/*.profraw -o "$counts"
measured=("$build/bin/libMultiEntity.Native.so" -object "$build/bin/internals_tests" -instr-profile "$counts")

llvm-cov-19 report "${measured[@]}" -show-branch-summary -show-mcdc-summary -show-region-summary=false \
  "$PWD/MultiEntity.Native" 2>"$build/report.log" | awk '
  # Filename, then count, missed and share each of functions, lines, branches and conditions.
  function share(count, missed) { return count ? sprintf("%d of %d", count - missed, count) : "-" }
  function row(name, lines, branches, conditions) { printf "%-48s %12s %12s %12s\n", name, lines, branches, conditions }
  NR == 1 { row("", "lines", "branches", "MC/DC") }
  $2 ~ /^[0-9]+$/ {
    row($1, share($5, $6), share($8, $9), share($11, $12))
    missed = $6 + $9 + $12
    files++
  }
  END { exit $1 != "TOTAL" || files < 2 || missed != 0 }' && exit

llvm-cov-19 show "${measured[@]}" -format=html -show-branches=count -show-mcdc -output-dir="$build/html" \
  "$PWD/MultiEntity.Native"
printf 'What is not reached stands in %s/html/index.html\n' "$build" >&2
exit 1

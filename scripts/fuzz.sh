#!/usr/bin/env bash
# scripts/fuzz.sh BUILD NAME   runs a fuzz target of a build for FUZZ_SECONDS, or ten seconds, from its corpus in
#                              tests/fuzz/corpus; what it finds on the way stays in BUILD/corpus for the next run
# Its output goes to BUILD/fuzz-NAME.log. An input that breaks a property is kept as BUILD/found/NAME-*;
# "BUILD/bin/NAMEFuzzer FILE" plays it again.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$1
name=$2
log=$build/fuzz-$name.log

declare -A longest=([Import]=2048 [CommandLine]=512 [Facade]=512 [Envelope]=2048 [Fact]=1024 [Identity]=1024
  [Invitation]=1024 [TextBlock]=1024)

options=(-max_total_time="${FUZZ_SECONDS:-10}" -timeout=20 -max_len="${longest[$name]:-128}"
  -artifact_prefix="$build/found/$name-" -print_final_stats=1)
if [ -e "tests/fuzz/$name.dict" ]; then options+=(-dict="tests/fuzz/$name.dict"); fi

mkdir -p "$build/corpus/$name" "$build/found"
"$build/bin/${name}Fuzzer" "$build/corpus/$name" "tests/fuzz/corpus/$name" "${options[@]}" >"$log" 2>&1 || {
  echo "Found something, see $log"
  tail -n 40 "$log"
  exit 1
}
printf '%s: %s runs\n' "$name" "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")"

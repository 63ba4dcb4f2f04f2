#!/usr/bin/env bash
# scripts/fuzz.sh BUILD SECONDS   runs every fuzz target of a build that long, two at a time, each from its corpus in
#                                 tests/fuzz/corpus; what it finds on the way stays in BUILD/corpus for the next run
# Writes NAME.status beside each BUILD/fuzz-NAME.log: 0 when nothing was found. An input that breaks a property is kept
# as BUILD/found/NAME-*; "BUILD/bin/NAMEFuzzer FILE" plays it again.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$1
seconds=$2

declare -A longest=([Import]=2048 [CommandLine]=512 [Facade]=512)

fuzz() {
  local name=$1 status=0
  local dictionary=tests/fuzz/$name.dict
  mkdir -p "$build/corpus/$name" "$build/found"
  "$build/bin/${name}Fuzzer" "$build/corpus/$name" "tests/fuzz/corpus/$name" -max_total_time="$seconds" -timeout=20 \
    -max_len="${longest[$name]:-128}" -artifact_prefix="$build/found/$name-" -print_final_stats=1 \
    $([ ! -e "$dictionary" ] || echo "-dict=$dictionary") >"$build/fuzz-$name.log" 2>&1 || status=$?
  echo "$status" >"$build/fuzz-$name.status"
  printf '%-14s %s runs%s\n' "$name" "$(sed -n 's/^stat::number_of_executed_units: *//p' "$build/fuzz-$name.log")" \
    "$([ "$status" -eq 0 ] || echo ", FOUND something, see $build/fuzz-$name.log")"
}

# The slow ones first.
for name in CommandLine Import CommandUrl Facade LaunchDate RemoteNumber Amount; do
  while [ "$(jobs -rp | wc -l)" -ge 2 ]; do wait -n || true; done
  fuzz "$name" &
done
wait

#!/usr/bin/env bash
# Usage: compare-plans.sh PROGRAM PLANS
#
# Compares the plans by which the engine runs the hand-written statements of the benchmarks with those in PLANS. Ends with
# 77 when they differ and the engine is of another version.
set -euo pipefail

plans=$("$1" --plans)
diff <(tail -n +2 "$2") <(tail -n +2 <<<"$plans") && exit
if [ "$(head -n 1 "$2")" = "${plans%%$'\n'*}" ]; then
  echo "The engine runs the hand-written statements by other plans than $2; see whether they are as good."
  exit 1
fi
echo "Another engine than that of $2 runs the hand-written statements by other plans; see whether they are as good."
exit 77

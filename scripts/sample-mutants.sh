#!/usr/bin/env bash
# Judges a sample of the module's mutants: MUTATION_SAMPLE of them, chosen by MUTATION_SEED. Unless that is given, another
# sample for each commit, so that all have their turn.
set -euo pipefail
cd "$(dirname "$0")/.."

commit=$(git rev-parse --short=7 HEAD || echo 1)
arguments=(--sample "${MUTATION_SAMPLE:-24}" --seed "${MUTATION_SEED:-$((16#$commit))}")
echo "tests/mutation/mutate.py ${arguments[*]}"
exec python3 tests/mutation/mutate.py "${arguments[@]}"

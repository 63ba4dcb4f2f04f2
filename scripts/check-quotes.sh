#!/usr/bin/env bash
# Plays a job and holds a document to what is printed: each command that the document quotes, with all of its output, is
# one of the play, and they come in the order of the play.
#
#   scripts/check-quotes.sh PROGRAM DIRECTORY JOB DOCUMENT
#
# PROGRAM is multientity, DIRECTORY receives the company files, JOB names scripts/play-JOB.sh. A request id is made anew
# each time, and the digest of an audit trail tells of it; so is the fingerprint of a company. Any other one may stand in
# the document.
set -euo pipefail

if [[ $# -ne 4 ]]; then
  echo "usage: $0 PROGRAM DIRECTORY JOB DOCUMENT" >&2
  exit 2
fi
scripts=$(dirname -- "${BASH_SOURCE[0]}")
program=$1
directory=$2
job=$3
document=$4

without_chance() {
  sed -E 's/[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}/REQUEST/g; s/[0-9a-f]{64}/DIGEST/g
    s/[0-9]{5}( [0-9]{5}){5}/FINGERPRINT/g; s/[[:space:]]+$//'
}

# The commands of a play, one to a record that ends with a byte of zero. How each ended and the steps are left out.
commands_played() {
  without_chance <"$1" | awk '
    function flush() { if (record != "") { sub(/\n+$/, "", record); printf "%s%c", record, 0 } record = "" }
    /^   \$ / { flush(); record = substr($0, 4) "\n"; next }
    /^[0-9]+\. / || /^   ->/ { flush(); next }
    record != "" { sub(/^      /, ""); record = record $0 "\n" }
    END { flush() }'
}

# The same of a document: its blocks that begin with a command.
commands_quoted() {
  without_chance <"$1" | awk '
    function flush() { if (record != "") { sub(/\n+$/, "", record); printf "%s%c", record, 0 } record = "" }
    /^```/ { flush(); inside = !inside; next }
    inside && /^\$ / { flush(); record = $0 "\n"; next }
    inside && record != "" { record = record $0 "\n" }
    END { flush() }'
}

mkdir -p -- "$(dirname -- "$directory")"
"$scripts/play-$job.sh" "$program" "$directory" | tee -- "$directory.txt"
mapfile -d '' -t played < <(commands_played "$directory.txt")
mapfile -d '' -t quoted < <(commands_quoted "$document")

next=0
failed=0
for quotation in "${quoted[@]}"; do
  at=$next
  while [[ $at -lt ${#played[@]} && "${played[at]}" != "$quotation" ]]; do at=$((at + 1)); done
  if [[ $at -lt ${#played[@]} ]]; then
    next=$((at + 1))
    continue
  fi
  failed=$((failed + 1))
  printf '%s: not played, or not in this order:\n%s\n' "$document" "$quotation" >&2
done
[[ $failed -eq 0 ]]
[[ ${#quoted[@]} -gt 0 ]]
printf '%d commands that %s quotes print what it says\n' "${#quoted[@]}" "$document"

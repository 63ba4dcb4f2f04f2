#!/usr/bin/env bash
# Plays jobs with the Windows program and with the native one, and compares what they print:
#
#   scripts/compare-plays.sh NATIVE WINDOWS DIRECTORY JOB...
#
# NATIVE and WINDOWS are programs that can be started here, DIRECTORY receives the company files, and scripts/play-JOB.sh
# plays a job. Prints what the Windows program did. Exits with 1 when something is not as expected, or differs in more
# than the time of day and the request ids that are made anew.
set -euo pipefail

if [[ $# -lt 4 ]]; then
  echo "usage: $0 NATIVE WINDOWS DIRECTORY JOB..." >&2
  exit 2
fi
scripts=$(dirname -- "${BASH_SOURCE[0]}")
native=$1
windows=$2
directory=$3
shift 3
mkdir -p -- "$directory"
# Both programs play on one day.
export MULTIENTITY_NOW
MULTIENTITY_NOW=$(date +%F)T12:00:00

# What one play tells of the time at which it is played, and how long it is until a day begins; the digest of an audit
# trail tells of its times. A request id that is made anew is another one each time, and so is the
# fingerprint of a company, and of a letter what names who is to take it. The folder of the letters is the play's.
without_times() {
  sed -E 's/[0-9]{2}:[0-9]{2}:[0-9]{2}/HH:MM:SS/g; s/[0-9]{2,} seconds/SS seconds/g; s/[0-9a-f]{64}/DIGEST/g
    s/[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}/REQUEST/g
    s/[0-9a-f]{16}-/ADDRESS-/g; s/[^ ]*[\\/]shared/FOLDER/g
    s/[0-9]{5}( [0-9]{5}){5}/FINGERPRINT/g' -- "$1"
}

# compare JOB: plays it with both programs.
compare() {
  local job=$1
  "$scripts/play-$job.sh" "$native" "$directory/$job-native" >"$directory/$job-native.txt" || {
    cat -- "$directory/$job-native.txt"
    return 1
  }
  "$scripts/play-$job.sh" "$windows" "$directory/$job-windows" | tee -- "$directory/$job-windows.txt" || return 1
  diff -u --label "$job, native" --label "$job, Windows" \
    <(without_times "$directory/$job-native.txt") <(without_times "$directory/$job-windows.txt")
}

for job in "$@"; do
  compare "$job"
  echo
done
echo "The native program printed the same, but for the time of day and new request ids."

#!/usr/bin/env bash
# Usage: count-instructions.sh PROGRAM BASELINE FOLDER [--write]
#
# Counts the instructions of the fixed pieces of work in PROGRAM with callgrind, compares them with BASELINE and fails
# when one of them has grown by more than 5 %. With --write, BASELINE is written anew. FOLDER takes the profiles. Ends
# with 77 when the counts are shown but cannot be compared, because BASELINE is of other tools.
#
# What the project, SQLite and libsodium run themselves is counted, not the system's libraries beneath them: what a heap
# costs depends on its state, and the processor chooses the string functions.
set -euo pipefail

program=$(realpath "$1")
baseline=$2
folder=$3
mode=${4:-}

most_percent=5

# What the counts depend on besides the sources.
version_of() {
  dpkg-query -W -f='${Version}' "$1" | sed -E 's/^[0-9]+://; s/[-+].*//'
}
toolchain="$(uname -m), gcc $(${CXX:-c++} -dumpfullversion), SQLite $(version_of libsqlite3-0)"
toolchain+=", fmt $(version_of libfmt-dev)"
toolchain+=", toml++ $(version_of libtomlplusplus-dev)"
toolchain+=", nlohmann/json $(version_of nlohmann-json3-dev)"
toolchain+=", libsodium $(version_of libsodium23)"

rm -rf "$folder"
mkdir -p "$folder"
# The same few variables and a relative folder everywhere: path names cost by their length.
(
  cd "$folder"
  env -i TZ=UTC LC_ALL=C TMPDIR=. \
    "$(command -v valgrind)" --tool=callgrind --instr-atstart=no --callgrind-out-file=profile "$program"
) 2>"$folder/valgrind.log" || {
  cat "$folder/valgrind.log" >&2
  exit 1
}

"$(dirname "$0")/instructions_of_profile.py" "$folder" "$(basename "$program")" libMultiEntity.Native.so libsqlite3.so \
  libsodium.so >"$folder/counts.txt"

if [ "$mode" = --write ]; then
  { printf '# Instructions of each piece of work, as scripts/count-instructions.sh counts them; %s\n' "$toolchain"
    cat "$folder/counts.txt"; } >"$baseline"
  echo "Wrote $(wc -l <"$folder/counts.txt") counts to $baseline."
  exit 0
fi

there=$(sed -n '1s/^# .*; //p' "$baseline")
[ -n "$there" ] || {
  echo "$baseline does not begin with the tools that its counts depend on." >&2
  exit 1
}
if [ "$there" != "$toolchain" ]; then
  cat "$folder/counts.txt"
  echo "The committed counts are those of other tools, so nothing is compared:"
  echo "  here: $toolchain"
  echo "  there: $there"
  exit 77
fi

awk -F '\t' -v most="$most_percent" '
  NR == FNR { if ($0 !~ /^#/) before[$2] = $1; next }
  !($2 in before) { print "not in the baseline: " $2; failed = 1; next }
  {
    seen[$2] = 1
    grown = before[$2] > 0 ? 100 * ($1 - before[$2]) / before[$2] : 100
    if (grown > most) {
      printf "grown by %.1f %%: %s, from %d to %d instructions\n", grown, $2, before[$2], $1
      failed = 1
    }
  }
  END {
    for (name in before) if (!(name in seen)) { print "no longer counted: " name; failed = 1 }
    if (!failed) print FNR " counts, none has grown by more than " most " %"
    else print "If that is wanted, run scripts/count-instructions.sh with --write and say why in the commit"
    exit failed
  }' "$baseline" "$folder/counts.txt"

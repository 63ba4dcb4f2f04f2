#!/usr/bin/env bash
# Runs clang-tidy over every source outside of the tests that the build in $1 knows.
set -euo pipefail
cd "$(dirname "$0")/.."

sources=$(git ls-files --cached --others --exclude-standard -- '*.cpp' ':!tests' |
  while read -r file; do grep -q "\"file\": \"$PWD/$file\"" "$1/compile_commands.json" && echo "$file"; done || true)
[ -n "$sources" ] || { echo "There is nothing to check in $1." >&2; exit 1; }

# clang does not know every option of the compiler that builds.
mkdir -p "$1/lint"
sed 's/ -fno-gnu-unique//g; s/ -Wno-restrict//g' "$1/compile_commands.json" >"$1/lint/compile_commands.json"

# Findings go to standard output; the count of what was suppressed in system headers does not.
echo "$sources" | xargs -P "$(nproc)" -n 1 clang-tidy-19 -p "$1/lint" --quiet 2> >(grep -vE '^[0-9]+ warnings? generated' >&2)
echo "$(echo "$sources" | wc -l) sources, nothing found"

#!/usr/bin/env bash
# What the embedding guide and README quote of the example is in it, line for line, and the example is as small as they
# say.
set -euo pipefail
cd "$(dirname "$0")/.."

example=$(cat examples/embedding/{CMakeLists.txt,MemoryHost.h,main.cpp})
most_lines=200
quoted=0
failed=0

# Prints each line of the blocks of code in the file $1 after the number of its block.
blocks() {
  awk '/^```(cpp|cmake)$/ { inside = 1; count++; next }
    /^```$/ { inside = 0 }
    inside { print count ":" $0 }' "$1"
}

# Whether the example has the lines $1, all of them indented by the same blanks.
is_quoted() {
  local indent
  for indent in '' '  ' '    '; do
    [[ $'\n'$example$'\n' == *$'\n'"$(sed "s/^./$indent&/" <<<"$1")"$'\n'* ]] && return
  done
  return 1
}

for document in docs/embedding.md README.md; do
  lines=$(blocks "$document")
  last=$(tail -n 1 <<<"$lines" | cut -d: -f1)
  for ((number = 1; number <= ${last:-0}; number++)); do
    block=$(sed -n "s/^$number://p" <<<"$lines")
    quoted=$((quoted + 1))
    is_quoted "$block" && continue
    failed=$((failed + 1))
    printf '%s: not in examples/embedding:\n%s\n' "$document" "$block" >&2
  done
done

lines=$(cat examples/embedding/*.{h,cpp} | wc -l)
if [ "$lines" -ge "$most_lines" ]; then
  printf 'examples/embedding has %d lines of C++; the guide promises less than %d.\n' "$lines" "$most_lines" >&2
  failed=$((failed + 1))
fi
[ "$failed" -eq 0 ]
[ "$quoted" -gt 0 ]
printf '%d quotations are in the example of %d lines\n' "$quoted" "$lines"

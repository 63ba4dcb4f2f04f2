#!/usr/bin/env bash
# What is in the folders $@, programs and libraries, looks for libraries in its own folders only: an entry of its run path
# begins with $ORIGIN or is the folder in which it lies. An empty one would be the current folder.
set -euo pipefail

entries_of() {
  readelf -d "$1" 2>/dev/null | sed -nE 's/.*\((RUNPATH|RPATH)\).*\[(.*)\]$/\2/p'
}

# Whether the entry $1 of the file $2 stays with it.
is_own() {
  case $1 in
    '$ORIGIN' | '$ORIGIN/'* | "$(realpath "$(dirname "$2")")") return 0 ;;
  esac
  return 1
}

looked=0
foreign=0
for folder in "$@"; do
  for file in "$folder"/*; do
    [ -f "$file" ] && readelf -h "$file" >/dev/null 2>&1 || continue
    looked=$((looked + 1))
    paths=$(entries_of "$file")
    [ -n "$paths" ] || continue
    while IFS= read -r -d : entry; do
      is_own "$entry" "$file" && continue
      printf '%s looks for libraries in "%s".\n' "$file" "$entry" >&2
      foreign=1
    done <<<"$paths:"
  done
done
[ "$looked" -gt 0 ] || { echo "There is no program to look at." >&2; exit 1; }
printf '%s programs and libraries looked at.\n' "$looked"
exit "$foreign"

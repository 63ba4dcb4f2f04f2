#!/usr/bin/env bash
# Fails when a source is formatted otherwise than .clang-format says.
set -euo pipefail
cd "$(dirname "$0")/.."

sources=$(git ls-files --cached --others --exclude-standard -- '*.h' '*.cpp' '*.c' |
  while read -r file; do if [ -e "$file" ]; then echo "$file"; fi; done)
[ -n "$sources" ] || { echo "git lists no sources." >&2; exit 1; }
xargs clang-format-19 --dry-run --Werror <<<"$sources"

#!/usr/bin/env bash
# Fails when programs under Wine left something behind where Windows keeps temporary files.
set -euo pipefail
cd "$(dirname "$0")/.."

left=$(find build/wine/drive_c/windows/temp build/wine/drive_c/users -ipath '*/temp/*')
[ -z "$left" ] || { printf 'Left behind:\n%s\n' "$left"; exit 1; }
echo "The temporary folders are empty."

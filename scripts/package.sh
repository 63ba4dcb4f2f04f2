#!/usr/bin/env bash
# Makes the zip of the build of preset $1, says where it lies.
set -euo pipefail
cd "$(dirname "$0")/.."

log=build/$1.package.log
cpack --preset "$1" >"$log" 2>&1 || {
  cat "$log" >&2
  exit 1
}
rm -rf build/packages/_CPack_Packages
sed -n 's/^CPack: - package: \(.*\) generated\.$/\1/p' "$log"

#!/usr/bin/env bash
# Holds the arrows between the rooms: each room includes only what it may. Names every file and include that breaks them.
set -euo pipefail
cd "$(dirname "$0")/.."

# Prints "room file include" for each include, the include with its delimiters.
includes() {
  git ls-files --cached --others --exclude-standard -- '*.h' '*.cpp' |
    xargs awk '/^[ \t]*#[ \t]*include/ {
      include = $0
      sub(/^[ \t]*#[ \t]*include[ \t]*/, "", include)
      sub(/[ \t].*/, "", include)
      room = FILENAME
      sub(/\/.*/, "", room)
      print room, FILENAME, include
    }'
}

includes | awk '
  function allowed(room, file, include) {
    standard = include ~ /^<[a-z_]+>$/
    if (room == "host") return standard || include ~ /^"host\//
    if (room == "platform") return include ~ /^<[^\/]*>$/ || include ~ /^<sys\// || include ~ /^"(host|platform)\//
    if (room == "MultiEntity.Native") {
      return standard || include ~ /^"(host|platform|MultiEntity|MultiEntityDriver|MultiEntityScheduler|MultiEntityUtils)\//
    }
    if (include ~ /windows\.h/) return file ~ /^(tests\/)?standalone\/([a-z]+\/)?[A-Za-z0-9]*Win32(Test)?\.cpp$/
    if (room == "examples") return standard || include ~ /^"((host|MultiEntity)\/)?[A-Za-z0-9]+\.h"$/
    if (room == "standalone") return include ~ /^</ || include ~ /^"(host|standalone|MultiEntity)\//
    return 1
  }
  !allowed($1, $2, $3) { print $2 ": may not include " $3; broken = 1 }
  { count++ }
  END {
    if (!broken) print count " includes, none breaks an arrow"
    exit broken
  }'

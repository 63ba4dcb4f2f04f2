#!/usr/bin/env bash
# scripts/check-includes.sh          holds the arrows between the rooms that scripts/rooms.txt allows, and names every
#                                    include that breaks them
# scripts/check-includes.sh --rooms  prints the rooms floor by floor, from the top down, with the arrows that they take
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$#" -gt 0 ] && { [ "$#" -gt 1 ] || [ "$1" != --rooms ]; }; then
  printf 'There is no option %s; --rooms prints the rooms with their arrows.\n' "$*" >&2
  exit 2
fi

sources() {
  git ls-files --cached --others --exclude-standard -- '*.h' '*.cpp' |
    while read -r file; do if [ -e "$file" ]; then echo "$file"; fi; done
}

# Prints "include FILE INCLUDE" for each include, the include with its delimiters.
includes() {
  sources | xargs awk '/^[ \t]*#[ \t]*include/ {
      include = $0
      sub(/^[ \t]*#[ \t]*include[ \t]*/, "", include)
      sub(/[ \t].*/, "", include)
      print "include", FILENAME, include
    }'
}

{ sources | sed 's/^/file /'; sed -nE 's/^([^#:]+):(.*)/room \1 \2/p' scripts/rooms.txt; includes; } | awk -v printed="${1:-}" '
  # The include paths that lead elsewhere than from the top.
  BEGIN {
    split("MultiEntityHost MultiEntityHostHelpers MultiEntity Frame MultiEntityDriver MultiEntityScheduler MultiEntityUtils",
      roots)
    place["MultiEntityHost"] = "host"
    place["MultiEntityHostHelpers"] = "host_helpers"
    place["MultiEntity"] = "MultiEntity.Native/include"
    for (i = 4; i in roots; i++) place[roots[i]] = "MultiEntity.Native/Src"
  }

  function complain(text) { print text; broken = 1 }

  # The room that a file lies in: the longest name that its path begins with, up to the end of a part or of a file name.
  function room_of(path,    i, best, rest) {
    best = ""
    for (i = 1; i <= rooms; i++) {
      if (index(path, name[i]) != 1 || length(name[i]) <= length(best)) continue
      rest = substr(path, length(name[i]) + 1)
      if (rest ~ /^[\/.]/) best = name[i]
    }
    return best
  }

  function path_of(include, file,    first, folder) {
    first = include
    sub(/\/.*/, "", first)
    if (first in place) return place[first] "/" include
    if (room_of(include) != "") return include
    # Beside the file, or from tests/.
    if (file ~ /^(tests|bench)\// && include ~ /\//) return "tests/" include
    folder = file
    sub(/\/[^\/]*$/, "", folder)
    return folder "/" include
  }

  # The folders themselves are not on every path.
  function is_own(include,    first) {
    first = include
    sub(/\/.*/, "", first)
    return include ~ /\// && ((first in place) || room_of(include) != "")
  }
  function is_standard(include) { return include ~ /^[a-z_]+$/ }
  function library_of(include) { sub(/\/.*/, "", include); return include }

  $1 == "file" { is_file[$2] = 1; next }
  $1 == "room" {
    name[++rooms] = $2
    libraries = 0
    for (i = 3; i <= NF; i++) {
      if ($i == "|") libraries = 1
      else if (libraries) { library[$2, $i] = 1; known[$i] = 1 }
      else { allowed[$2, $i] = 1; arrows[$2] = arrows[$2] " " $i }
    }
    next
  }

  {
    count++
    from = room_of($2)
    include = substr($3, 2, length($3) - 2)
    if (from == "") { complain($2 ": lies in no room of scripts/rooms.txt"); next }
    if ($3 !~ /^(<[^<>]+>|"[^"]+")$/ || include ~ /\.\./) {
      complain($2 ": has to name what it includes from the top, not as " $3)
      next
    }
    if ($3 ~ /^</) {
      if (is_own(include)) { complain($2 ": has to include what is ours as \"" include "\""); next }
      if (tolower(include) ~ /^(windows|winuser|winbase)\.h$/ && $2 !~ /(Win32(Test)?\.cpp|^platform\/SystemTime\.h)$/) {
        complain($2 ": only the sources for Windows may include windows.h")
        next
      }
      if (is_standard(include) || (from, "*") in library) next
      kind = library_of(include)
      if ((from, kind) in library) { used[from, kind] = 1; next }
      if (include ~ /\.h$/ && !(kind in known) && (from, "system") in library) {
        used[from, "system"] = 1
        next
      }
      complain($2 ": may not include " $3)
      next
    }
    path = path_of(include, $2)
    if (include ~ /^(host|host_helpers|MultiEntity\.Native)\//) {
      complain($2 ": has to include " $3 " as its users do")
      next
    }
    if (!(path in is_file)) { complain($2 ": there is no " $3 " of ours"); next }
    to = room_of(path)
    if (to == "") { complain($2 ": " $3 " lies in no room"); next }
    if (to == from) next
    if (!((from, to) in taken)) { taken[from, to] = 1; way[from] = way[from] " " to }
    if (!((from, to) in allowed) && !((from, "*") in allowed)) complain($2 ": may not include " $3 ", which is of " to)
  }

  function below(room,    i, parts, n, deepest, floor) {
    if (room in height) return height[room]
    height[room] = 0
    n = split(way[room], parts, " ")
    deepest = 0
    for (i = 1; i <= n; i++) { floor = below(parts[i]) + 1; if (floor > deepest) deepest = floor }
    return height[room] = deepest
  }

  END {
    for (i = 1; i <= rooms; i++) order[name[i]] = i
    for (i = 1; i <= rooms; i++) {
      n = split(arrows[name[i]], targets, " ")
      for (j = 1; j <= n; j++) {
        if (targets[j] == "*") continue
        if (!(targets[j] in order)) complain("scripts/rooms.txt: " name[i] " names no room: " targets[j])
        else if (order[targets[j]] < i) complain("scripts/rooms.txt: " name[i] " has an arrow that runs back: " targets[j])
        else if (!((name[i], targets[j]) in taken)) complain("scripts/rooms.txt: " name[i] " does not take its arrow to " targets[j])
      }
    }
    for (key in library) {
      split(key, pair, SUBSEP)
      if (pair[2] != "*" && !(key in used)) complain("scripts/rooms.txt: " pair[1] " does not use " pair[2])
    }
    if (broken) exit 1
    if (printed == "") { print count " includes, none breaks an arrow"; exit 0 }
    top = 0
    for (i = 1; i <= rooms; i++) if (name[i] !~ /^(tests|bench|examples)$/ && below(name[i]) > top) top = below(name[i])
    for (floor = top; floor >= 0; floor--) {
      for (i = 1; i <= rooms; i++) {
        if (name[i] ~ /^(tests|bench|examples)$/ || below(name[i]) != floor) continue
        line = ""
        for (j = i + 1; j <= rooms; j++) if ((name[i], name[j]) in taken) line = line " " name[j]
        printf "%2d  %-42s%s\n", floor, name[i], line == "" ? "" : " ->" line
      }
    }
  }'

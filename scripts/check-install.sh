#!/usr/bin/env bash
# Installs the release and unzips its package elsewhere; builds and runs another project against nothing but either.
set -euo pipefail
cd "$(dirname "$0")/.."

work="$PWD/build/install"
rm -rf "$work"
mkdir -p "$work"

# Builds the example against the installation in $1, in $2, and runs it.
embed() {
  cmake -S "$1/share/doc/MultiEntityNative/examples/embedding" -B "$2" -G Ninja -DCMAKE_PREFIX_PATH="$1" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS="-Wall -Wextra -Wpedantic -Werror" >/dev/null
  cmake --build "$2" >/dev/null
  "$2/embedding"
}

# What the programs and libraries in $1 load is in $1 or belongs to every system with a C++ runtime.
needs_only_itself() {
  local system='^(linux-vdso|ld-linux-x86-64|libc|libm|libgcc_s|libstdc\+\+)\.so'
  local strangers
  strangers=$(find "$1/bin" "$1/lib" -type f \( -perm -u+x -o -name '*.so*' -o -name '*.DLL' \) -exec ldd {} + |
    awk -v inside="$1/" '/^\t/ && index($0, inside) == 0 { sub(/.*\//, "", $1); print $1 }' |
    grep -vE "$system" || true)
  [ -z "$strangers" ] || {
    printf 'The package needs what is not in it: %s\n' "$strangers" >&2
    return 1
  }
}

installed="$work/installed"
cmake --install build/release --prefix "$installed" >/dev/null
printf -- '--- against the installation\n'
embed "$installed" "$work/against-installed"
"$installed/bin/multientity" --version

zip=$(scripts/package.sh release)
mkdir "$work/un zipped"
(cd "$work/un zipped" && cmake -E tar xf "$zip")
unzipped="$work/un zipped/$(basename "$zip" .zip)"
printf -- '--- against %s\n' "$(basename "$zip")"
needs_only_itself "$unzipped"
embed "$unzipped" "$work/against un zipped"
"$unzipped/bin/multientity" --version

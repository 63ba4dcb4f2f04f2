#!/usr/bin/env bash
# Installs the build of preset $1, release or windows, and unzips its package elsewhere; builds and runs another project
# against nothing but either.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
work="$PWD/build/install/$preset"
rm -rf "$work"
mkdir -p "$work"

case $preset in
  release)
    compiler=()
    emulator=()
    program=multientity
    own=(lib/libMultiEntity.Native.so lib/libsqlite3.so.0 lib/libsodium.so.23 share/man/man1/multientity.1
      share/bash-completion/completions/multientity share/zsh/site-functions/_multientity)
    ;;
  windows)
    compiler=(-DCMAKE_SYSTEM_NAME=Windows -DCMAKE_CXX_COMPILER=x86_64-w64-mingw32-g++-posix)
    emulator=(scripts/under-wine.sh)
    program=multientity.exe
    own=(bin/MultiEntity.Native.dll lib/libMultiEntity.Native.dll.a bin/libstdc++-6.dll bin/libgcc_s_seh-1.dll
      bin/libwinpthread-1.dll)
    ;;
esac

# Builds the example against the installation in $1, in $2, and runs it.
embed() {
  cmake -S "$1/share/doc/MultiEntityNative/examples/embedding" -B "$2" -G Ninja -DCMAKE_PREFIX_PATH="$1" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS="-Wall -Wextra -Wpedantic -Werror" "${compiler[@]}" >/dev/null
  cmake --build "$2" >/dev/null
  "${emulator[@]}" "$2/embedding${program#multientity}"
}

# The names of what the programs and libraries in $1 load, without what they find in there.
loaded_from_elsewhere_by() {
  local files=("$1"/bin/*)
  if [ "$preset" = windows ]; then
    x86_64-w64-mingw32-objdump -p "${files[@]}" | awk '/DLL Name:/ { print $3 }' | sort -u |
      while read -r name; do [ -e "$1/bin/$name" ] || echo "$name"; done
  else
    ldd "${files[@]}" "$1"/lib/*.so* |
      awk -v inside="$1/" '/^\t/ && index($0, inside) == 0 { sub(/.*\//, "", $1); print $1 }' | sort -u
  fi
}

# What is in $1 needs nothing but itself and what every system with a C++ runtime has.
needs_only_itself() {
  local system='^((linux-vdso|ld-linux-x86-64|libc|libm|libgcc_s|libstdc\+\+)\.so|(ADVAPI32|KERNEL32|USER32|SHELL32|msvcrt)\.dll$)'
  local loaded strangers
  loaded=$(loaded_from_elsewhere_by "$1") && [ -n "$loaded" ] || return 1
  strangers=$(grep -vE "$system" <<<"$loaded" || true)
  [ -z "$strangers" ] && return
  printf 'The package needs what is not in it: %s\n' "$strangers" >&2
  return 1
}

# $1 holds what the guide promises, licences included.
holds_everything() {
  local docs=share/doc/MultiEntityNative name
  for name in "bin/$program" bin/AddinBridge.DLL "${own[@]}" include/MultiEntityNative/MultiEntity/MultiEntityDriver.h \
    include/MultiEntityNative/MultiEntityHost/HostServices.h lib/cmake/MultiEntityNative/MultiEntityNativeConfig.cmake \
    $docs/{CHANGELOG.md,LICENSE,README.md,THIRD-PARTY.md,docs/embedding.md,examples/embedding/main.cpp,examples/exchange/read_envelope.py} \
    $docs/third-party/{CLI11,fmt,libsodium,nlohmann-json,sqlite,tomlplusplus,unicode}.txt; do
    [ -s "$1/$name" ] || { printf 'The package lacks %s.\n' "$name" >&2; return 1; }
  done
}

# What is in $1 looks for libraries in there only.
looks_nowhere_else() {
  [ "$preset" = windows ] || scripts/check-run-paths.sh "$1/bin" "$1/lib"
}

# Both programs of the installation in $1 do their work; the example is built in $2.
works() {
  printf -- '--- in %s\n' "${1#"$work/"}"
  embed "$1" "$2"
  "${emulator[@]}" "$1/bin/$program" --version
}

installed="$work/installed"
cmake --install "build/$preset" --prefix "$installed" >/dev/null
looks_nowhere_else "$installed"
works "$installed" "$work/embedding"

zip=$(scripts/package.sh "$preset")
mkdir "$work/un zipped"
(cd "$work/un zipped" && cmake -E tar xf "$zip")
unzipped="$work/un zipped/$(basename "$zip" .zip)"
holds_everything "$unzipped"
needs_only_itself "$unzipped"
looks_nowhere_else "$unzipped"
works "$unzipped" "$work/embedding against un zipped"

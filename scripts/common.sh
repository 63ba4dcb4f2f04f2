# Shared by ./run and ./test: what is missing is installed, then built.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_packages=(g++ cmake ninja-build libsqlite3-dev libcli11-dev libtomlplusplus-dev nlohmann-json3-dev libfmt-dev
  libsodium-dev python3 unicode-data)
test_packages=(git libgtest-dev libgmock-dev clang-format-19 clang-tidy-19 binutils clang-19 llvm-19 libclang-rt-19-dev
  librapidcheck-dev valgrind ledger python3-nacl)
# What the plays hand the books to.
play_packages=(hledger)
bench_packages=(libbenchmark-dev)
windows_packages=(g++-mingw-w64-x86-64-posix wine64 googletest)
# Who has an npm of another origin keeps it.
command -v npm >/dev/null || windows_packages+=(npm)

# What starts a program that needs memory at certain addresses. Where a system spreads a program's memory at random, Wine
# finds the place of its clock taken in about one start of ten thousand and ends without a word, and older runtimes of
# ThreadSanitizer do not find their way at all. Empty where the system does not let it be switched off.
unspread=()
if setarch "$(uname -m)" -R true 2>/dev/null; then unspread=(setarch "$(uname -m)" -R); fi
export MULTIENTITY_START_WINE="${unspread[*]}"

say() {
  printf '\n==> %s\n' "$*"
}

fail() {
  printf '%s\n' "$*" >&2
  exit 1
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    fail "Packages have to be installed: run this once as root, or install sudo. Missing: ${missing[*]}"
  fi
}

install_missing() {
  missing=()
  local package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
  done
  if [ "${#missing[@]}" -eq 0 ]; then return; fi
  say "Installing ${missing[*]}"
  as_root apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# Folders of tests/ that the tree of a preset does without.
declare -A left_out=()

configure() {
  cmake --preset "$1" ${left_out[$1]:+"-DMULTIENTITY_LEAVE_OUT=${left_out[$1]}"} >"build/$1.configure.log" 2>&1 || {
    cat "build/$1.configure.log" >&2
    printf 'The %s build could not be configured.\n' "$1" >&2
    return 1
  }
}

# Configures and builds one preset; $2 and the rest name targets.
build() {
  local preset=$1
  shift
  configure "$preset" || return
  cmake --build --preset "$preset" -j "$(nproc)" ${1:+--target "$@"}
}

# Wine ends with its last program, takes seconds to start again, and fails a program that comes while it ends. One that
# waits for input keeps it running until this script ends.
keep_wine_running() {
  coproc wine_keeper { exec scripts/under-wine.sh cmd /c 'pause >nul' 2>/dev/null; }
}

# Ends whatever runs on the project's own files of Wine, also what an earlier run left.
end_wine() {
  [ -d build/wine ] || return 0
  local option
  for option in -k -w; do
    WINEPREFIX=$PWD/build/wine timeout --foreground 60 /usr/lib/wine/wineserver64 "$option" >/dev/null 2>&1 || true
  done
}

# Wine's files for this project, made once by each script so that nothing of an earlier run is in them. Wine would put
# folders of the user's into them, and its menus among the user's.
make_wine_prefix() {
  if [ -n "${wine_keeper_PID:-}" ]; then return; fi
  end_wine
  rm -rf build/wine
  mkdir -p build/wine
  trap end_wine EXIT
  timeout --foreground -k 10 300 scripts/under-wine.sh wineboot --init >build/wine.log 2>&1 || {
    cat build/wine.log >&2
    echo "Wine could not make its files in build/wine." >&2
    return 1
  }
  local link
  find build/wine/drive_c/users -mindepth 2 -maxdepth 2 -type l | while read -r link; do rm "$link" && mkdir "$link"; done
  keep_wine_running
}

mkdir -p build

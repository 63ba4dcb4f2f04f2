# What the scripts that play a job on the sample companies share; they source this file with PROGRAM and DIRECTORY.
set -euo pipefail

if [[ $# -ne 2 ]]; then
  echo "usage: $0 PROGRAM DIRECTORY" >&2
  exit 2
fi
program=$(realpath -- "$1")
birchs_program=${BIRCHS_PROGRAM:+$(realpath -- "$BIRCHS_PROGRAM")}
samples=$(realpath -- "$(dirname -- "${BASH_SOURCE[0]}")/../samples")
mkdir -p -- "$2"
cd -- "$2"
if [[ -n "$(ls -A)" && ! -e .played ]]; then
  echo "$0: $2 is not empty; give a new directory" >&2
  exit 2
fi
rm -rf -- samples shared ./*.company* ./*.journal ./*.invitation ./*.letters output.txt errors.txt
touch .played
mkdir samples
cp -r -- "$samples"/alder "$samples"/birch samples/

# From noon, so that no play goes on into another day.
export MULTIENTITY_NOW=${MULTIENTITY_NOW:-$(date +%F)T12:00:00}
readonly kToday=${MULTIENTITY_NOW%T*}
seconds=0

readonly kAlder='Alder Supply Company' kAlderRealm=5120774003618
readonly kBirch='Birch Services Company' kBirchRealm=5120918846275
readonly kVendor='Cold Spring Elevator Company' kAccount='Elevator Maintenance'
readonly kDriver=MultiEntityDriver

step_number=0
step_text=
unexpected=()
exit_code=0
status=-
output=
complaint=
trace=

step() {
  step_number=$((step_number + 1))
  step_text=$1
  printf '\n%d. %s\n' "$step_number" "$step_text"
}

# The command line as a person would type it.
typed() {
  local word line=multientity
  for word in "$@"; do
    [[ $word == *[[:space:]]* ]] && word="\"$word\""
    line+=" $word"
  done
  printf '%s' "$line"
}

# Each command is given later than the one before it, as letters are read in the order of their times.
later() {
  seconds=$((seconds + 10))
  printf -v MULTIENTITY_NOW '%sT%02d:%02d:%02d' "$kToday" $((12 + seconds / 3600)) $((seconds / 60 % 60)) $((seconds % 60))
}

# The program that works on the company of a command: Birch may have another one than Alder.
program_for() {
  local word
  for word in "$@"; do
    if [[ $word == birch.company ]]; then
      printf '%s' "${birchs_program:-$program}"
      return
    fi
  done
  printf '%s' "$program"
}

# Runs the program; `output`, `complaint` and `trace` hold what it printed, `status` what the module answered (- when it
# was not asked), `exit_code` how it ended.
ask() {
  exit_code=0
  later
  "$(program_for "$@")" "$@" --trace >output.txt 2>errors.txt || exit_code=$?
  output=$(tr -d '\r' <output.txt)
  trace=$(tr -d '\r' <errors.txt | grep '^log ' || true)
  complaint=$(tr -d '\r' <errors.txt | grep -v -e '^log ' -e '^status ' || true)
  status=$(tr -d '\r' <errors.txt | sed -n 's/^\(multientity: \)\{0,1\}status \([0-9]*\): .*/\2/p')
  status=${status:--}
}

# Shows text under a step; lines that repeat one after the other are counted.
show() {
  [[ -z "$1" ]] && return
  printf '%s\n' "$1" | awk -v indent="      $2" '
    function flush() { if (count) print indent last (count > 1 ? "  (" count " times)" : "") }
    $0 == last { count++; next }
    { flush(); last = $0; count = 1 }
    END { flush() }'
}

unexpected_here() {
  unexpected+=("step $step_number ($step_text): $1")
  printf '   !! %s\n' "$1"
}

# run STATUS ARGUMENT...: runs the program before the reader's eyes and expects the module to answer STATUS, or with -
# not to be asked. The program must end with 0 when all is done and with 1 when the module declined.
run() {
  local expected_exit=1
  [[ $1 == - || $1 == 1 ]] && expected_exit=0
  run_to_exit "$expected_exit" "$@"
}

# run_to_exit EXIT STATUS ARGUMENT...: the same for a program that must end with EXIT.
run_to_exit() {
  local expected_exit=$1 expected=$2
  shift 2
  printf '   $ %s\n' "$(typed "$@")"
  ask "$@"
  show "$output" ''
  show "$trace" ''
  show "$complaint" ''
  if [[ $status == - ]]; then
    printf '   -> exit %d\n' "$exit_code"
  else
    printf '   -> status %s, exit %d\n' "$status" "$exit_code"
  fi
  [[ $status == "$expected" ]] || unexpected_here "the module answered $status instead of $expected"
  [[ $exit_code -eq $expected_exit ]] || unexpected_here "ended with exit code $exit_code instead of $expected_exit"
}

# prepare ARGUMENT...: runs the program without showing more than the command line; it must succeed.
prepare() {
  printf '   $ %s\n' "$(typed "$@")"
  ask "$@"
  [[ $exit_code -eq 0 ]] || unexpected_here "ended with exit code $exit_code: $complaint"
}

# look ARGUMENT...: runs the program and shows what it prints, but not what the log gains; it must succeed.
look() {
  prepare "$@"
  show "$output" ''
  show "$complaint" ''
}

# The log gained exactly these lines, each "LEVEL EVENT OPERATION: MESSAGE".
log_gained() {
  local line rest expected=
  for line in "$@"; do
    rest=${line#* }
    expected+="log level ${line%% *} event ${rest%% *} ${rest#* }"$'\n'
  done
  [[ "$trace" == "${expected%$'\n'}" ]] || unexpected_here "the log gained other lines than: ${expected//$'\n'/ | }"
}

contains() {
  [[ "$1" == *"$2"* ]] || unexpected_here "$3: \"$2\" is missing"
}

lacks() {
  [[ "$1" != *"$2"* ]] || unexpected_here "$3: \"$2\" should not be there"
}

# The value of a text or number in one line of JSON.
json_value() {
  sed -n "s/.*\"$2\":\"\{0,1\}\([^\",}]*\).*/\1/p" <<<"$1" | head -n 1
}

# What the log gains when a right is asked for.
granted=("1 5 $kDriver::HasMEPermission: MULTIENTITY::Entering $kDriver::HasMEPermission"
  "1 5 $kDriver::HasMEPermission: MULTIENTITY::Exiting $kDriver::HasMEPermission")

# Says how it went; the scripts end with it.
verdict() {
  echo
  if [[ ${#unexpected[@]} -ne 0 ]]; then
    echo "NOT as expected:"
    printf '  - %s\n' "${unexpected[@]}"
    exit 1
  fi
  echo "All is as expected: $step_number steps played."
}

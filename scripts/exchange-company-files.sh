#!/usr/bin/env bash
# Makes a company file with each of two programs, and has the other one and itself write to it in turn:
#
#   scripts/exchange-company-files.sh NATIVE WINDOWS DIRECTORY
#
# NATIVE and WINDOWS are programs that can be started here; DIRECTORY is made anew. Both must list the same, byte for byte,
# whoever made and changed the file, and its database must be sound. Exits with 1 when it is not so.
set -euo pipefail

if [[ $# -ne 3 ]]; then
  echo "usage: $0 NATIVE WINDOWS DIRECTORY" >&2
  exit 2
fi
script=$(realpath -- "${BASH_SOURCE[0]}")
# What is booked bears the day.
export MULTIENTITY_NOW
MULTIENTITY_NOW=$(date +%F)T12:00:00
native=$(realpath -- "$1")
windows=$(realpath -- "$2")
samples=${script%/*}/../samples
if [[ -e $3 && ! -e $3/.exchanged ]]; then
  echo "$0: $3 exists and is not from here; give a new directory" >&2
  exit 2
fi
rm -rf -- "$3"
mkdir -p -- "$3"
cd -- "$3"
touch .exchanged
cp -r -- "$samples" samples

readonly kFile='Birch & Töchter.company'
readonly kPartner='Alder Supply Company' kRealm=5120774003618

# What lists, with FILE in the place of the company file.
readonly kListings="settings show FILE
users list FILE
accounts FILE
accounts FILE --type Expense
accounts FILE --free
names FILE
relation list FILE
relation list FILE --realms
relation show FILE --realm $kRealm
transactions FILE
transactions FILE --txn 601
transaction exists FILE --realm $kRealm --request R-1
rejected list FILE
realm show FILE
persona FILE --role 1
plugin check FILE"

# listing PROGRAM ARGUMENT...: all that the program lists; ARGUMENT is added to each command.
listing() {
  local program=$1 line words
  shift
  while read -r line; do
    echo "== $line"
    read -ra words <<<"$line"
    "$program" "${words[@]/#FILE/"$kFile"}" "$@" </dev/null || return 1
  done <<<"$kListings"
}

# same_listing ARGUMENT...: both programs list the same, which `listed` holds then.
same_listing() {
  local on_windows
  listed=$(listing "$native" "$@")
  on_windows=$(listing "$windows" "$@")
  diff -u --label 'listed by the native program' --label 'listed by the Windows program' \
    <(printf '%s\n' "$listed") <(printf '%s\n' "$on_windows")
}

# The operations log, to which both wrote; no listing of it adds to it, while nobody sets the clock.
same_log() {
  local -x MULTIENTITY_NOW=
  local last=(log "$kFile" --last 100000) natively on_windows
  natively=$("$native" "${last[@]}")
  on_windows=$("$windows" "${last[@]}")
  diff -u --label 'the log, read by the native program' --label 'the log, read by the Windows program' \
    <(printf '%s\n' "$natively") <(printf '%s\n' "$on_windows")
}

# book PROGRAM REQUEST AMOUNT
book() {
  "$1" journal record "$kFile" --realm "$kRealm" --amount "$3" --request "$2" --new-expense "Wartung $2" \
    --new-name "Käuferin $2"
}

# exchange MAKER OTHER: a file of the maker's in both hands; `listed` holds the listing in the end.
exchange() {
  local maker=$1 other=$2
  "$maker" init "$kFile" --name 'Birch & Töchter'
  "$maker" import accounts "$kFile" samples/birch/accounts.csv
  "$maker" import names "$kFile" samples/birch/names.csv
  "$maker" relation create "$kFile" --realm "$kRealm" --partner "$kPartner" --due-from "Due from $kPartner" \
    --due-to "Due to $kPartner"
  "$maker" import transactions "$kFile" samples/birch/transactions.csv
  book "$maker" R-1 480.00
  same_listing

  book "$other" R-2 75.50
  "$other" users add "$kFile" Zoë --right journal:create
  "$other" rejected save "$kFile" --realm "$kRealm" --request R-9 --type bill --amount 125.00 --partner-txn 4711
  book "$maker" R-3 1,234.56
  "$maker" journal remove "$kFile" --txn 602
  "$other" realm set "$kFile" --realm 5120918846275
  "$other" settings set "$kFile" accountants-copy yes
  same_listing --json
  same_listing
  same_log
}

require_sound_database() {
  python3 - "$kFile" <<'PYTHON'
import sqlite3, sys
database = sqlite3.connect(sys.argv[1])
found = database.execute("PRAGMA integrity_check").fetchall() + database.execute("PRAGMA foreign_key_check").fetchall()
sys.exit(None if found == [("ok",)] else f"The database is damaged: {found}")
PYTHON
}

echo "A company file that is made natively"
exchange "$native" "$windows"
require_sound_database
made_natively=$listed
mkdir made-natively
mv -- "$kFile"* made-natively/

echo
echo "A company file that is made on Windows"
exchange "$windows" "$native"
require_sound_database
without_times() { sed -E 's/^(Created|Changed) at: .*/\1/' <<<"$1"; }
diff -u --label 'made natively' --label 'made on Windows' \
  <(without_times "$made_natively") <(without_times "$listed")

echo
echo "Both programs list the same, whoever made and changed the file."

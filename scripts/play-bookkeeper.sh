#!/usr/bin/env bash
# Plays the day of a bookkeeper: a bill and a check that partners share, what goes wrong with them, the close of a month
# and what is looked up and handed on, and checks every step:
#
#   scripts/play-bookkeeper.sh PROGRAM DIRECTORY
#
# PROGRAM is multientity. DIRECTORY receives the company files; it is new, or one that such a script has used before,
# which is emptied first. Exits with 1 when something is not as expected.

# The day is always the same one, because docs/accountant.md quotes what is printed.
export MULTIENTITY_NOW=2026-11-30T12:00:00
. "$(dirname -- "${BASH_SOURCE[0]}")/play.sh"

readonly kCedar='Cedar Leasing Company' kCedarRealm=5120000000042
readonly kLift='Hillcrest Lift Service' kTown='City of Millbrook'

# at HOUR:MINUTE: what follows is typed then.
at() {
  export MULTIENTITY_NOW=${kToday}T$1:00
}

# refused ARGUMENT...: the program refuses it and says why, which `complaint` holds; the company file stays as it was,
# byte by byte.
refused() {
  local before
  before=$(cat ./*.company | sha256sum)
  run_to_exit 2 - "$@"
  [[ $before == "$(cat ./*.company | sha256sum)" ]] || unexpected_here 'the refusal left something behind'
}

# The part of a transaction that a partner bears, as JSON.
part_of() {
  ask transactions "$1" --txn "$2" --json
  grep "\"partner\":\"$3\"" <<<"$output" || true
}

# holds FILE ACCOUNT AMOUNT: what the account of the company holds.
holds() {
  ask balances "$1" --account "$2" --json
  contains "$output" "\"own\":\"$3\"" "what $2 holds in $1"
}

# Each account that holds something and what it holds, as the program tells it.
own_balances() {
  ask balances "$1" --json
  sed -nE 's/.*"name":"([^"]*)","type":.*"own":"([^"]*)".*/\1,\2/p' <<<"$output" | grep -v ',0\.00$' | LC_ALL=C sort
}

# The same as hledger adds it up from a journal.
balances_of_journal() {
  hledger -f "$1" balance --flat --no-total --output-format csv | tr -d '"\r' |
    sed -E '1d; s/,([^,]*) USD$/,\1/' | LC_ALL=C sort
}

echo "The day of a bookkeeper"

at 08:00
step "$kAlder and $kBirch open their books."
for company in alder birch; do
  if [[ $company == alder ]]; then name=$kAlder realm=$kAlderRealm; fi
  if [[ $company == birch ]]; then name=$kBirch realm=$kBirchRealm; fi
  prepare init $company.company --name "$name"
  prepare realm set $company.company --realm "$realm"
  prepare import accounts $company.company samples/$company/accounts.csv
  prepare import names $company.company samples/$company/names.csv
done

step "Alder invites Birch, which accepts. Alder's bookkeeper has Birch's read out the fingerprint, and confirms."
look partner invite alder.company --name "$kBirch" --due-from "Due from $kBirch" --due-to "Due to $kBirch" \
  --output alder.invitation
look partner accept birch.company alder.invitation --due-from "Due from $kAlder" --due-to "Due to $kAlder"
look exchange export birch.company "$kAlder" --output birch.letters
look exchange import alder.company birch.letters
contains "$output" 'has accepted the invitation' "what Birch's letter says"
look exchange status alder.company
look partner fingerprint birch.company
fingerprint=$output
refused partner confirm alder.company "$kBirch" --fingerprint "${fingerprint#* } 00000"
look partner confirm alder.company "$kBirch" --fingerprint "$fingerprint"
look exchange export alder.company "$kBirch" --output alder.letters
look exchange import birch.company alder.letters
contains "$output" 'the relation is established' "what Alder's letter says"
look relation list birch.company
contains "$output" "$kAlderRealm" "Birch's relations"

step "What Alder has so far comes in as an entry. A zero is missing at first, and what does not sum to zero is refused."
refused entry record alder.company --memo "Opening balance" --line "Operating Checking" 25000.00 \
  --line "Retained Earnings" -2500.00
contains "$complaint" 'sum to 22,500.00, not to 0.00' 'the refusal'
look entry record alder.company --memo "Opening balance" --line "Operating Checking" 25000.00 \
  --line "Retained Earnings" -25000.00

step "A second partner comes with two accounts of its own. A new expense account and a new vendor get their names put right."
look account add alder.company "Due from $kCedar" --type "Other Current Asset"
look account add alder.company "Due to $kCedar" --type "Other Current Liability"
prepare relation create alder.company --realm "$kCedarRealm" --partner "$kCedar" \
  --due-from "Due from $kCedar" --due-to "Due to $kCedar"
look account add alder.company Elevators --type Expense --number 6450
look account rename alder.company 6450 "$kAccount"
look name add alder.company "Hilcrest Lift" --kind vendor
look name rename alder.company "Hilcrest Lift" "$kLift"
ask accounts alder.company --json
contains "$output" "\"name\":\"$kAccount\",\"number\":\"6450\"" "Alder's accounts"
lacks "$output" '"Elevators"' "Alder's accounts"
ask names alder.company --json
contains "$output" "\"name\":\"$kLift\"" "Alder's names"
lacks "$output" 'Hilcrest Lift"' "Alder's names"

at 09:00
step "A bill arrives, of which Birch bears half. Entered twice, it is refused the second time."
look bill record alder.company --name "$kLift" --number HL-1017 --memo "Yearly inspection" \
  --line "$kAccount" 690.00 --partner "$kBirch" --share 50%
refused bill record alder.company --name "$kLift" --number HL-1017 --line "$kAccount" 690.00
contains "$complaint" 'is in the books, as bill 2' 'the refusal'
holds alder.company "Due from $kBirch" 345.00

at 09:15
step "Two digits were swapped: the bill is over 960.00. It is reversed and entered anew in one go."
look bill correct alder.company 2 --line "$kAccount" 960.00 --partner "$kBirch" --share 50%
contains "$output" 'Reversed bill 2 with bill 3 and posted bill 4 in its place.' 'the correction'
contains "$(part_of alder.company 2 "$kBirch")" '"state":"closed"' "Birch's part of the wrong bill"
holds alder.company "Due from $kBirch" 480.00
holds alder.company "$kAccount" 480.00
request=$(json_value "$(part_of alder.company 4 "$kBirch")" requestId)

at 09:30
step "Alder mails Birch the letters, with which the request goes."
look exchange export alder.company "$kBirch" --output inspection.letters
contains "$(part_of alder.company 4 "$kBirch")" '"state":"sent"' "Birch's part"

at 10:00
step "Birch finds the request in its inbox and books it. The account and the vendor are new there."
look exchange import birch.company inspection.letters
look inbox list birch.company
contains "$output" "$request" "Birch's inbox"
look inbox accept birch.company "$request" --new-expense "$kAccount" --new-name "$kLift"
holds birch.company "Due to $kAlder" -480.00
holds birch.company "$kAccount" 480.00
look open-items birch.company
contains "$output" 'agreed' "Birch's open items"

at 10:30
step "Birch's letters bring the answer to Alder. The same bill cannot be taken out of the books any more."
look exchange export birch.company "$kAlder" --output booked.letters
look exchange import alder.company booked.letters
contains "$(part_of alder.company 4 "$kBirch")" '"state":"established"' "Birch's part"
refused remove alder.company 4

at 11:00
step "A check pays for licences that three companies share in equal parts. The cent that is left over falls to the partner named first."
look check record alder.company --name "$kTown" --number 1042 --memo "Licences" --line "Dues and Subscriptions" 100.00 \
  --bank "Operating Checking" --partner "$kBirch" --share 1/3 --partner "$kCedar" --share 1/3
contains "$(part_of alder.company 5 "$kBirch")" '"amount":"33.34"' "Birch's part"
contains "$(part_of alder.company 5 "$kCedar")" '"amount":"33.33"' "Cedar's part"
holds alder.company "Dues and Subscriptions" 33.33

step "The check is copied for a second licence, and once too often, which is removed. The first one comes back from the bank."
prepare check copy alder.company 5 --number 1043
prepare check copy alder.company 5 --number 1044
[[ $(json_value "$(part_of alder.company 6 "$kBirch")" requestId) != \
  "$(json_value "$(part_of alder.company 5 "$kBirch")" requestId)" ]] ||
  unexpected_here 'the copy has the request of the original'
look remove alder.company 7
look reverse alder.company 5 --memo "Check 1042 came back"
contains "$(part_of alder.company 5 "$kCedar")" '"state":"closed"' "Cedar's part of the first check"
contains "$(part_of alder.company 6 "$kCedar")" '"state":"entered"' "Cedar's part of the second check"
holds alder.company "Due from $kCedar" 33.33
holds alder.company "Operating Checking" 24900.00

at 14:00
step "Birch says no to its part of the second check. It keeps the request, so that nobody books it, and Alder gets the answer."
licence=$(json_value "$(part_of alder.company 6 "$kBirch")" requestId)
look exchange export alder.company "$kBirch" --output licence.letters
refused reverse alder.company 6
contains "$complaint" "waits for the partner's answer" 'the refusal'
look exchange import birch.company licence.letters
look inbox reject birch.company "$licence" --reason "We have a licence of our own"
look exchange export birch.company "$kAlder" --output refused.letters
look exchange import alder.company refused.letters
contains "$(part_of alder.company 6 "$kBirch")" '"state":"came-back"' "Birch's part"
refused journal record birch.company --partner "$kAlder" --amount 33.34 --request "$licence" \
  --expense "Dues and Subscriptions" --name "$kAlder"
contains "$complaint" 'is rejected' 'the refusal'

at 15:00
step "Birch pays the bill. Each company enters the payment on its side, and nothing of it is open any more."
look check record birch.company --name "$kAlder" --number 2001 --memo "HL-1017" --line "Due to $kAlder" 480.00 \
  --bank "Operating Checking"
look entry record alder.company --memo "Birch paid HL-1017" --line "Operating Checking" 480.00 \
  --line "Due from $kBirch" -480.00
holds birch.company "Due to $kAlder" 0.00
holds alder.company "Due from $kBirch" 33.34
ask open-items birch.company --json
lacks "$output" '"standing"' "Birch's open items"

at 16:00
step "October is closed. A bill of October comes late, is refused, and is entered today."
look settings set alder.company closing-date 2026-10-31
late=(bill record alder.company --name "Tri-County Telephone" --number TT-88 --line Telephone 45.00)
refused "${late[@]}" --date 2026-10-28
contains "$complaint" '2026-10-31' 'the refusal'
prepare "${late[@]}" --memo "Of October"
holds alder.company Telephone 45.00

step "What is there? The usual company need not be named."
export MULTIENTITY_COMPANY=alder.company
printf '   $ export MULTIENTITY_COMPANY=alder.company\n'
look balances
contains "$output" 'Elevator Maintenance' "Alder's balances"
unset MULTIENTITY_COMPANY
look register alder.company "Due from $kBirch"
look open-items alder.company
contains "$output" 'came-back' "Alder's open items"
lacks "$output" 'HL-1017' "Alder's open items"
look show alder.company 4
contains "$output" 'corrects 2' 'the bill'

at 17:00
step "The books go to the accountant as a journal in plain text, which comes to the same balances."
look export alder.company --output alder.journal
if command -v hledger >/dev/null; then
  printf '   $ hledger -f alder.journal check\n'
  hledger -f alder.journal check || unexpected_here 'hledger does not accept the journal'
  ours=$(own_balances alder.company)
  printf '   $ hledger -f alder.journal balance --flat\n'
  show "$(hledger -f alder.journal balance --flat)" ''
  contains "$ours" "Due from $kBirch,33.34" 'what the program tells'
  [[ "$ours" == "$(balances_of_journal alder.journal)" ]] || unexpected_here 'hledger comes to other balances'
else
  echo '   hledger is not installed; the balances are not compared.'
fi

step "The trail tells why there is no check 7, and nobody has touched it. Its last SHA-256 is written down elsewhere."
look audit show alder.company --what transaction.remove
contains "$output" ') removed check 7' "Alder's trail"
look audit show birch.company --from "$kToday"
contains "$output" ') accepted as journal entry ' "Birch's trail"
contains "$output" 'amount 480.00 USD' "Birch's trail"
look audit verify alder.company
contains "$output" 'The audit trail is whole: ' "Alder's trail"
look audit verify birch.company
contains "$output" 'The audit trail is whole: ' "Birch's trail"

verdict

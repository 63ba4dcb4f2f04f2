#!/usr/bin/env bash
# Plays how two companies that are paired ask each other to book what they share: a bill that is accepted, one that comes
# back and is corrected, one that is withdrawn, and letters that come twice or were tampered with; and checks every step:
#
#   scripts/play-exchange.sh PROGRAM DIRECTORY
#
# PROGRAM is multientity. DIRECTORY receives the company files and the folder by which the letters go; it is new, or one
# that such a script has used before, which is emptied first. BIRCHS_PROGRAM names another program for Birch, if it has
# one. Exits with 1 when something is not as expected.

# The day is always the same one, because README.md quotes what is printed.
export MULTIENTITY_NOW=2026-11-30T12:00:00
. "$(dirname -- "${BASH_SOURCE[0]}")/play.sh"

readonly kPower='Northfield Power and Light'

# carry COMPANY...: each takes and puts its letters. The folder is shown as it was named, not where it is here.
carry() {
  local company
  for company in "$@"; do
    prepare exchange run $company.company
    show "$(sed 's/ into .*/ into shared/' <<<"$output")" ''
  done
}

# Enters a bill of Alder's with Birch's share of it; `bill` is its transaction, `request` what Birch is asked.
enter() {
  look bill record alder.company "$@"
  bill=$(sed -n 's/^Posted bill \([0-9]*\)\.$/\1/p' <<<"$output")
  request_of "$bill"
}

# The request of one of Alder's transactions.
request_of() {
  ask outbox list alder.company --all --json
  request=$(json_value "$(grep "\"transaction\":$1," <<<"$output" || true)" requestId)
  [[ -n $request ]] || unexpected_here "transaction $1 has no request"
}

# expect_state COMPANY BOX REQUEST STATE
expect_state() {
  ask "$2" show "$1.company" "$3" --json
  contains "$output" "\"state\":\"$4\"" "$1's $2"
}

# What an account of a company holds.
own_of() {
  ask balances "$1.company" --account "$2" --json
  json_value "$(grep '"own"' <<<"$output" || true)" own
}

# All that Birch's books and its inbox hold.
all_of_birch() {
  ask balances birch.company --json
  printf '%s\n' "$output"
  ask inbox list birch.company --all --json
  printf '%s\n' "$output"
}

# The newest letter that lies in the folder.
letter_in_the_folder() {
  find shared -maxdepth 1 -name '*.envelope' | LC_ALL=C sort | tail -n 1
}

echo "Two companies exchange requests"

step "$kAlder and $kBirch open their books, and are paired by a folder that both see."
mkdir shared
for company in alder birch; do
  if [[ $company == alder ]]; then name=$kAlder realm=$kAlderRealm; fi
  if [[ $company == birch ]]; then name=$kBirch realm=$kBirchRealm; fi
  prepare init $company.company --name "$name"
  prepare realm set $company.company --realm "$realm"
  prepare import accounts $company.company samples/$company/accounts.csv
  prepare import names $company.company samples/$company/names.csv
done
prepare partner invite alder.company --name "$kBirch" --due-from "Due from $kBirch" --due-to "Due to $kBirch" \
  --folder shared --output alder.invitation
prepare partner accept birch.company alder.invitation --due-from "Due from $kAlder" --due-to "Due to $kAlder" \
  --folder shared
carry birch alder
ask partner fingerprint birch.company
look partner confirm alder.company "$kBirch" --fingerprint "$output"
carry alder birch alder
look exchange status alder.company
contains "$output" 'established' "Alder's status"

step "Alder pays for an elevator inspection of which Birch bears half. What it asks of Birch leaves by itself."
enter --name "$kVendor" --number CS-1017 --memo "Yearly inspection" --line "Repairs and Maintenance" 960.00 \
  --partner "$kBirch" --share 50%
inspection=$bill inspection_request=$request
carry alder
contains "$output" 'sent 1 request' 'what Alder has sent'
carry birch
look exchange status alder.company
contains "$output" 'sent, without an answer: 1 request over 480.00' "Alder's status"

step "Birch finds it in its inbox, and books it. The account and the vendor are new there."
look inbox list birch.company
contains "$output" "$inspection_request" "Birch's inbox"
look inbox show birch.company "$inspection_request"
look inbox accept birch.company "$inspection_request" --new-expense "$kAccount" --new-name "$kVendor"
contains "$output" 'as journal entry 1 of' 'what was booked'

step "The answer gets to Alder, without anybody typing it: the bill is confirmed, and both have the same."
carry birch alder birch
look outbox show alder.company "$inspection_request"
expect_state alder outbox "$inspection_request" established
expect_state birch inbox "$inspection_request" accepted
look show alder.company "$inspection"
contains "$output" 'Confirmed  yes' "Alder's bill"

step "Half of the power bill is too much, says Birch: it rejects it, with the reason. Alder corrects it to a third."
enter --name "$kPower" --number NP-88 --line Utilities:Electricity 300.00 --partner "$kBirch" --share 50%
power=$bill power_request=$request
prepare exchange send alder.company
carry alder birch
look inbox reject birch.company "$power_request" --reason "Our meter says a third"
carry birch alder
expect_state alder outbox "$power_request" came-back
look outbox show alder.company "$power_request"
contains "$output" 'Our meter says a third' "what Alder is told"
look bill correct alder.company "$power" --line Utilities:Electricity 300.00 --partner "$kBirch" --share 1/3
expect_state alder outbox "$power_request" closed
corrected=$(sed -n 's/.* posted bill \([0-9]*\) in its place\..*/\1/p' <<<"$output")
request_of "${corrected:-$((power + 2))}"
prepare exchange send alder.company
carry alder birch
look inbox accept birch.company --up-to 100.00 --expense Utilities:Electricity
contains "$output" "$request" 'what was booked'
carry birch alder birch
expect_state alder outbox "$request" established

step "A bill was not for Birch at all. Alder withdraws what it has sent, and takes the bill back once Birch has let go of it."
enter --name "$kPower" --number NP-89 --line Utilities:Electricity 80.00 --partner "$kBirch" --share 50%
withdrawn=$bill withdrawn_request=$request
prepare exchange send alder.company
carry alder birch
look outbox withdraw alder.company "$withdrawn_request"
carry alder birch alder
expect_state birch inbox "$withdrawn_request" withdrawn
expect_state alder outbox "$withdrawn_request" closed
look reverse alder.company "$withdrawn"

step "A letter comes twice, and a third time with a byte changed. What is asked is in the inbox once; the forgery is set aside."
enter --name "$kPower" --number NP-90 --line Utilities:Electricity 60.00 --partner "$kBirch" --share 50%
prepare exchange send alder.company
carry alder
letter=$(letter_in_the_folder)
forged=${letter%.envelope}f.envelope
cp -- "$letter" "${letter%.envelope}2.envelope"
cp -- "$letter" "$forged"
cp -- "$letter" kept.letters
middle=$(($(wc -c <"$forged") / 2))
byte=$(od -An -tu1 -j "$middle" -N 1 -- "$forged")
printf "\\x$(printf %x $((byte ^ 1)))" | dd of="$forged" bs=1 seek="$middle" conv=notrunc status=none
carry birch
contains "$output" 'set aside: ' 'what Birch has taken'
ask inbox list birch.company --json
[[ $(grep -c "\"requestId\":\"$request\"" <<<"$output") -eq 1 ]] || unexpected_here 'the request is not there once'
look inbox accept birch.company --partner "$kAlder" --expense Utilities:Electricity
carry birch alder birch
before=$(all_of_birch)
cp -- kept.letters "$letter"
carry birch
[[ $before == "$(all_of_birch)" ]] || unexpected_here "a letter of before changed Birch's books"

step "Birch pays something, too: a check of which Alder bears a quarter. The same way, the other way round."
look check record birch.company --name "$kPower" --number 501 --line Utilities:Electricity 100.00 \
  --bank "Operating Checking" --partner "$kAlder" --share 25%
prepare exchange send birch.company
carry birch alder
look inbox accept alder.company --all --expense Utilities:Electricity
carry alder birch alder

step "Power bills come every month. Birch says where they go, and up to which amount they are booked as soon as they come."
look rules add birch.company --partner "$kAlder" --name "$kPower" --expense Utilities:Electricity
look partner auto birch.company "$kAlder" --up-to 50.00
enter --name "$kPower" --number NP-91 --line Utilities:Electricity 90.00 --partner "$kBirch" --share 1/3
carry alder birch
contains "$output" 'is booked here by rule' 'what Birch has taken'
carry alder birch
expect_state alder outbox "$request" established

step "Nothing is left to do, and what each company says of the other is the same."
for company in alder birch; do
  look exchange status $company.company
  contains "$output" 'both have the same' "$company's status"
  look inbox list $company.company
  contains "$output" 'No requests.' "$company's inbox"
  look outbox list $company.company
  contains "$output" 'No requests.' "$company's outbox"
done
printf '      %-32s %12s %12s\n' '' Alder Birch
alder_has=$(own_of alder "Due from $kBirch") birch_has=$(own_of birch "Due to $kAlder")
printf '      %-32s %12s %12s\n' 'Birch owes Alder' "$alder_has" "$birch_has"
[[ $alder_has == 640.00 ]] || unexpected_here "Birch owes Alder $alder_has instead of 640.00"
[[ $birch_has == "-$alder_has" ]] || unexpected_here "Alder says that Birch owes $alder_has, Birch says $birch_has"
alder_has=$(own_of alder "Due to $kBirch") birch_has=$(own_of birch "Due from $kAlder")
printf '      %-32s %12s %12s\n' 'Alder owes Birch' "$alder_has" "$birch_has"
[[ $birch_has == 25.00 ]] || unexpected_here "Alder owes Birch $birch_has instead of 25.00"
[[ $alder_has == "-$birch_has" ]] || unexpected_here "Birch says that Alder owes $birch_has, Alder says $alder_has"

step "An auditor looks at what was exchanged, and makes sure that nobody has touched the trails."
for company in alder birch; do
  look audit verify $company.company
  contains "$output" 'The audit trail is whole: ' "$company's trail"
done

verdict

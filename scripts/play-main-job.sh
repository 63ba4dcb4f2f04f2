#!/usr/bin/env bash
# Plays the main job on the two sample companies and checks every step:
#
#   scripts/play-main-job.sh PROGRAM DIRECTORY
#
# PROGRAM is multientity. DIRECTORY receives the company files; it is new, or one that such a script has used before,
# which is emptied first. Exits with 1 when something is not as expected.
. "$(dirname -- "${BASH_SOURCE[0]}")/play.sh"

created=("0 6 $kDriver::CreateRelation: MULTIENTITY::Entering $kDriver::CreateRelation"
  "1 5 $kDriver::IsFeatureEnabled: MULTIENTITY::Entering $kDriver::IsFeatureEnabled"
  "${granted[@]}")
# A period's list asks for the right to see bills, checks and journal entries, and passes over what lies outside. Of the
# samples' intercompany lines and what is booked here, each list below leaves out 36.
listed=("${granted[@]}" "${granted[@]}" "${granted[@]}")
for _ in {1..36}; do
  listed+=("3 5 $kDriver::GetListOfTxnTargetEntries: MULTIENTITY_WARNING: This transaction is not in desired period")
done

echo "An intercompany bill, from one company's books into the other's"

step "$kAlder and $kBirch open their books: accounts and names come from CSV files."
run - init alder.company --name "$kAlder" --sample
run - import accounts alder.company samples/alder/accounts.csv
run - import names alder.company samples/alder/names.csv
run - init birch.company --name "$kBirch" --sample
run - import accounts birch.company samples/birch/accounts.csv
run - import names birch.company samples/birch/names.csv

step "Each company relates itself to the other, with the two accounts that carry what they owe each other."
run 1 relation create alder.company --realm "$kBirchRealm" --partner "$kBirch" \
  --due-from "Due from $kBirch" --due-to "Due to $kBirch"
log_gained "${created[@]}"
run 1 relation create birch.company --realm "$kAlderRealm" --partner "$kAlder" \
  --due-from "Due from $kAlder" --due-to "Due to $kAlder"
log_gained "${created[@]}"

step "A year of bills, checks and journal entries follows, some of them paid for the partner."
run - import transactions alder.company samples/alder/transactions.csv
contains "$output" '600 transactions' 'imported'
run - import transactions birch.company samples/birch/transactions.csv
contains "$output" '600 transactions' 'imported'

step "On December 10 Alder paid half of an elevator inspection for Birch. Birch has not booked it yet."
run 1 transactions alder.company --from 2024-12-10 --to 2024-12-10
log_gained "${listed[@]}"
ask transactions alder.company --from 2024-12-10 --to 2024-12-10 --json
bill=$(grep "\"name\":\"$kVendor\"" <<<"$output" || true)
contains "$bill" '"type":"bill"' "Alder's bill"
contains "$bill" '"date":"2024-12-10"' "Alder's bill"
contains "$bill" '"amount":"480.00"' "Alder's bill"
contains "$bill" "\"name\":\"Due from $kBirch\"" "Alder's bill"
contains "$bill" '"state":"sent"' "Alder's bill"
request=$(json_value "$bill" requestId)
ask accounts birch.company --json
lacks "$output" "$kAccount" "Birch's accounts"
ask names birch.company --json
lacks "$output" "$kVendor" "Birch's names"

step "Birch books it as a journal entry. The expense account and the vendor are new to Birch and are created on the way."
run 1 journal record birch.company --realm "$kAlderRealm" --amount 480.00 --request "$request" \
  --new-expense "$kAccount" --new-name "$kVendor"
log_gained "${granted[@]}"
transaction=${output//[!0-9]/}
ask accounts birch.company --type Expense --json
contains "$output" "\"name\":\"$kAccount\"" "Birch's expense accounts"
ask names birch.company --json
contains "$output" "\"name\":\"$kVendor\"" "Birch's names"

step "The entry stands in Birch's list of the day, between the new account and the due-to account."
run 1 transactions birch.company --from "$kToday"
log_gained "${listed[@]}"
ask transactions birch.company --from "$kToday" --json
entry=$(grep "\"transaction\":$transaction," <<<"$output" || true)
contains "$entry" '"type":"journal"' "Birch's entry"
contains "$entry" "\"realm\":\"$kAlderRealm\"" "Birch's entry"
contains "$entry" "\"name\":\"$kVendor\"" "Birch's entry"
contains "$entry" "\"name\":\"$kAccount\"" "Birch's entry"
contains "$entry" "\"name\":\"Due to $kAlder\"" "Birch's entry"
contains "$entry" '"amount":"480.00"' "Birch's entry"
contains "$entry" '"currency":"USD"' "Birch's entry"
contains "$entry" '"state":"established"' "Birch's entry"
contains "$entry" "\"requestId\":\"$request\"" "Birch's entry"
entry_date=$(json_value "$entry" date)
[[ "$entry_date" == "$kToday" ]] ||
  unexpected_here "the entry is dated $entry_date instead of today"

step "A bill of a company that Birch is not related to is refused."
run_to_exit 2 - journal record birch.company --realm 5999000000001 --amount 75.00 --request unknown-partner-1 \
  --expense "$kAccount" --name "$kVendor"
contains "$complaint" 'there is no relation with the partner "5999000000001"' "the refusal"
log_gained

step "Robin may look at journal entries but not create them: a booking by Robin is refused."
run - users add birch.company Robin --right journal:view
run 3 journal record birch.company --realm "$kAlderRealm" --amount 75.00 --request robin-1 \
  --expense "$kAccount" --name "$kVendor" --user Robin
log_gained "${granted[@]}" "0 6 $kDriver::RecordGeneralJournalEntry: MULTIENTITY: No permission to record GJE"

step "The entry is removed again; the list of the day is empty, the account and the vendor stay."
run 1 journal remove birch.company --txn "$transaction"
log_gained
ask transactions birch.company --from "$kToday" --json
contains "$output" '"transactions":[]' "Birch's list"
ask accounts birch.company --type Expense --json
contains "$output" "\"name\":\"$kAccount\"" "Birch's expense accounts"

step "With the feature switched off from afar, no relation can be made; a booking is still possible."
printf '[switches.MultiEntityFeature]\nME_FOR_ALL = false\n' >birch.company.remote.toml
run 2 relation create birch.company --realm 5120000000042 --partner "Cedar Leasing Company" --state without-accounts
log_gained "0 6 $kDriver::CreateRelation: MULTIENTITY::Entering $kDriver::CreateRelation" \
  "1 5 $kDriver::IsFeatureEnabled: MULTIENTITY::Entering $kDriver::IsFeatureEnabled" \
  "0 6 MultiEntityUtils::IsFeatureEnabled: MULTIENTITY:: Global feature Off" \
  "1 5 $kDriver::IsFeatureEnabled: MULTIENTITY::Exiting $kDriver::IsFeatureEnabled, key 0, value 0 " \
  "0 6 $kDriver::CreateRelation: MULTIENTITY: CreateRelation :Feature is disabled"
run 1 journal record birch.company --realm "$kAlderRealm" --amount 480.00 --request "$request" \
  --expense "$kAccount" --name "$kVendor"
log_gained "${granted[@]}"
rm birch.company.remote.toml
ask relation list birch.company --realms --json
contains "$output" "\"$kAlderRealm\"" "Birch's partners"
lacks "$output" 5120000000042 "Birch's partners"

verdict

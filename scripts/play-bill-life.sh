#!/usr/bin/env bash
# Plays the whole life of an intercompany bill between the two sample companies, the guard of the realm and the daily
# reminder, and checks every step:
#
#   scripts/play-bill-life.sh PROGRAM DIRECTORY
#
# PROGRAM is multientity. DIRECTORY receives the company files; it is new, or one that such a script has used before,
# which is emptied first. Exits with 1 when something is not as expected.
. "$(dirname -- "${BASH_SOURCE[0]}")/play.sh"

readonly kPower='Northfield Power and Light' kSoftware='Workforce Software Inc.'

# The intercompany line of a company's books that a day and a vendor name, as JSON.
line_of() {
  ask transactions "$1" --from "$2" --to "$2" --json
  grep "\"name\":\"$3\"" <<<"$output" || true
}

# Keeps a company open before the reader's eyes until it prints a text, then ends its input; `output` holds what it
# printed, `trace` what the log gained.
open_until() {
  local text=$1 line reading=1 host
  shift
  printf '   $ %s\n' "$(typed open "$@")"
  output=
  coproc HOST { exec "$program" open "$@" --trace 2>errors.txt; }
  host=$HOST_PID
  exec {from_host}<&"${HOST[0]}" {to_host}>&"${HOST[1]}"
  while IFS= read -r -t 60 line <&"$from_host"; do
    output+="${line%$'\r'}"$'\n'
    if [[ -n $reading && $line == *"$text"* ]]; then
      reading=
      exec {to_host}>&- {HOST[1]}>&-
    fi
  done
  [[ -z $reading ]] || exec {to_host}>&- {HOST[1]}>&-
  exec {from_host}<&-
  exit_code=0
  wait "$host" || exit_code=$?
  trace=$(tr -d '\r' <errors.txt | grep '^log ' || true)
  show "${output%$'\n'}" ''
  printf '   -> exit %d\n' "$exit_code"
  [[ -z $reading ]] || unexpected_here "\"$text\" was not printed"
  [[ $exit_code -eq 0 ]] || unexpected_here "ended with exit code $exit_code instead of 0"
}

# The log gained this line: "LEVEL EVENT OPERATION: MESSAGE".
log_has() {
  local rest=${1#* }
  contains "$trace" "log level ${1%% *} event ${rest%% *} ${rest#* }" 'the log'
}

# open_company FILE SAMPLE NAME PARTNER REALM: a company's books with the relation to its partner and a year of
# transactions.
open_company() {
  prepare init "$1" --name "$3"
  prepare import accounts "$1" "samples/$2/accounts.csv"
  prepare import names "$1" "samples/$2/names.csv"
  prepare relation create "$1" --realm "$5" --partner "$4" --due-from "Due from $4" --due-to "Due to $4"
  prepare import transactions "$1" "samples/$2/transactions.csv"
}

echo "The whole life of an intercompany bill"

step "$kAlder and $kBirch keep their books and are related to each other."
open_company alder.company alder "$kAlder" "$kBirch" "$kBirchRealm"
open_company birch.company birch "$kBirch" "$kAlder" "$kAlderRealm"

step "On December 10 Alder paid half of an elevator inspection for Birch. Birch does not know the request yet, and books it."
bill=$(line_of alder.company 2024-12-10 "$kVendor")
contains "$bill" '"state":"sent"' "Alder's bill"
request=$(json_value "$bill" requestId)
run 0 transaction exists birch.company --realm "$kAlderRealm" --request "$request"
log_gained
run 1 journal record birch.company --realm "$kAlderRealm" --amount 480.00 --request "$request" \
  --new-expense "$kAccount" --new-name "$kVendor"

step "The same request comes again. It is recognised, and could not be booked twice either."
run 1 transaction exists birch.company --realm "$kAlderRealm" --request "$request"
log_gained "0 6 $kDriver::DoesTransactionExist: MULTIENTITY:: Matching Transaction found for partner realm [$kAlderRealm], request id [$request]"
run 0 journal record birch.company --realm "$kAlderRealm" --amount 480.00 --request "$request" \
  --expense "$kAccount" --name "$kVendor"
contains "$complaint" "is booked already, as journal entry" "the refusal"

step "Birch's answer reaches Alder: the bill is confirmed."
run 1 transaction set-state alder.company --realm "$kBirchRealm" --request "$request" --state 3
log_has "0 6 $kDriver::UpdateTransactionWithState: MULTIENTITY::Existing $kDriver::UpdateTransactionWithState"
contains "$(line_of alder.company 2024-12-10 "$kVendor")" '"state":"established"' "Alder's bill"

step "Robin may look at bills and modify checks: a change of another bill's state by Robin is refused."
second=$(line_of alder.company 2024-12-12 "$kPower")
second_request=$(json_value "$second" requestId)
run - users add alder.company Robin --right bills:view --right checks:modify
run 3 transaction set-state alder.company --realm "$kBirchRealm" --request "$second_request" --state established \
  --user Robin
log_has "0 6 $kDriver::UpdateTransactionWithState: MULTIENTITY_ERROR: No permission to update Bills"
contains "$(line_of alder.company 2024-12-12 "$kPower")" '"state":"sent"' "the other bill"

step "That other bill, half of a power bill, is rejected. Birch keeps the rejection, lists it and knows the request from now on."
second_amount=$(json_value "$second" amount)
run 0 transaction exists birch.company --realm "$kAlderRealm" --request "$second_request"
run 1 rejected save birch.company --realm "$kAlderRealm" --request "$second_request" --type bill \
  --amount "$second_amount" --partner-txn "$(json_value "$second" transaction)"
run 1 rejected list birch.company
ask rejected list birch.company --json
contains "$output" "\"requestId\":\"$second_request\"" "Birch's rejections"
contains "$output" "\"amount\":\"$second_amount\"" "Birch's rejections"
contains "$output" "\"partner\":\"$kAlder\"" "Birch's rejections"
run 1 transaction exists birch.company --realm "$kAlderRealm" --request "$second_request"
log_gained "0 6 $kDriver::DoesTransactionExist: MULTIENTITY:: Matching Rejected Transaction found for partner realm [$kAlderRealm], request id [$second_request]"

step "What was rejected is not booked as long as the rejection is kept."
run_to_exit 2 - journal record birch.company --realm "$kAlderRealm" --amount "$second_amount" \
  --request "$second_request" --expense "$kAccount" --name "$kVendor"
contains "$complaint" 'was rejected' "the refusal"
log_gained

step "The bill came back to Alder, where it waits to be corrected and sent again, or closed. It is not established."
run 1 transaction set-state alder.company --txn "$(json_value "$second" transaction)" \
  --target "$(json_value "$second" line)" --state came-back
log_gained "${granted[@]}"
contains "$(line_of alder.company 2024-12-12 "$kPower")" '"state":"came-back"' "the other bill"
run_to_exit 2 - transaction set-state alder.company --realm "$kBirchRealm" --request "$second_request" --state established
contains "$(line_of alder.company 2024-12-12 "$kPower")" '"state":"came-back"' "the other bill"

step "What Birch paid for Alder's software comes back to Birch in the same way."
software=$(line_of birch.company 2024-12-22 "$kSoftware")
contains "$software" '"state":"sent"' "Birch's bill"
run 1 transaction set-state birch.company --realm "$kAlderRealm" --request "$(json_value "$software" requestId)" \
  --state came-back

step "The realm is guarded. On first use the company file remembers it; unchanged, work goes on."
look realm show alder.company
contains "$output" 'remembers no realm id' 'before the first use'
run - realm check alder.company --realm "$kAlderRealm"
contains "$output" "from now on it remembers $kAlderRealm" 'on first use'
run - realm check alder.company --realm "$kAlderRealm"
contains "$output" 'The realm is unchanged' 'on second use'
look realm show alder.company
contains "$output" "$kAlderRealm" 'what is remembered'

step "The realm was reset: work is stopped, whatever the answer; with yes the relations are opened."
run_to_exit 1 - realm check alder.company --realm 5120999999999 --answer no
lacks "$output" krw: 'answered with no'
run_to_exit 1 - realm check alder.company --realm 5120999999999 --answer yes
contains "$output" 'krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET' 'answered with yes'
contains "$output" "$kBirch" "Alder's relations"

step "From afar the reminder is asked for one second after a company is opened."
for company in alder birch; do
  printf '[values.MultiEntity]\nInitialDelayInSeconds = "1"\nHoursToLaunchDay = "0"\n' >$company.company.remote.toml
done
look reminder show alder.company
contains "$output" 'comes while the company is open' "Alder's reminder"
contains "$output" '1 second, until' "Alder's reminder"

step "Alder is open. The reminder fires, the answer is yes, and what waits is opened."
open_until 'Relations that wait' alder.company --answer yes
log_has "0 6 MESchedulerUtil::StartScheduler: MULTIENTITY::StartScheduler: Starting Timer for 1 seconds"
log_has "0 6 MESchedulerUtil::OnTimerElapsed: MULTIENTITY::OnTimerElapsed: Timer elapsed"
contains "$output" 'Opened krw:LaunchMEPlugin?context=ICT_SCHEDULER' 'answered with yes'
contains "$output" "$second_request" 'what waits'
lacks "$output" "$request" 'what waits'
contains "$output" 'Closed alder.company' 'the end'
look reminder show alder.company
lacks "$output" 'remembers no day' "Alder's reminder"

step "Birch is open. The reminder fires, the answer is no, and nothing is opened."
open_until 'Answered' birch.company --answer no
contains "$output" 'Answered: No' 'answered with no'
lacks "$output" krw: 'answered with no'
contains "$output" 'Closed birch.company' 'the end'

step "An auditor looks at what was done in Birch's books today, and makes sure that nobody has touched the trail."
look audit show birch.company --from "$kToday"
contains "$output" ') recorded journal entry 601: ' "Birch's trail"
contains "$output" 'amount 480.00 USD' "Birch's trail"
contains "$output" ') saved the rejected request ' "Birch's trail"
look audit verify birch.company
contains "$output" 'The audit trail is whole: ' "Birch's trail"

verdict

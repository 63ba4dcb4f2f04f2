#!/usr/bin/env bash
# scripts/limited.sh SECONDS COMMAND ARGUMENT...
#
# Runs a test in a group of its own, so that all it started ends with it: it is killed after so many seconds, and told to
# end when whoever started it is gone. SECONDS may reckon with variables of the environment, as 300+FUZZ_SECONDS does.
exec setpriv --pdeathsig TERM timeout --signal KILL "$(($1))" "${@:2}"

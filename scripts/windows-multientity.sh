#!/usr/bin/env bash
# The program for Windows, run under Wine: windows-multientity.sh ARGUMENT...
# MULTIENTITY_WINDOWS_PROGRAM names another one that was built beside it.
scripts=$(dirname "${BASH_SOURCE[0]}")
exec "$scripts/under-wine.sh" "$scripts/../build/windows/bin/${MULTIENTITY_WINDOWS_PROGRAM:-multientity}.exe" "$@"

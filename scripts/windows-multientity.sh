#!/usr/bin/env bash
# The program for Windows, run under Wine: windows-multientity.sh ARGUMENT...
scripts=$(dirname "${BASH_SOURCE[0]}")
exec "$scripts/under-wine.sh" "$scripts/../build/windows/bin/multientity.exe" "$@"

#!/usr/bin/env bash
# Runs a Windows program: under-wine.sh PROGRAM ARGUMENT...
#
# Wine's files lie in a prefix of this project's own, which ./test and ./run make once. They also say
# what starts Wine.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX=$here/build/wine WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES="winemenubuilder.exe=d;mscoree,mshtml=" LC_ALL=C.UTF-8
unset DISPLAY WAYLAND_DISPLAY
# Debian's wrapper would look for the 32-bit loader first and complain.
exec ${MULTIENTITY_START_WINE:-} /usr/lib/wine/wine64 "$@"

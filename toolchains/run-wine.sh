#!/usr/bin/env bash
# Runs a Windows program of a build tree through Wine, in the throw-away prefix that ./dev made.
set -eu
wine_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/wine
export WINEPREFIX=${WINEPREFIX:-$wine_folder/prefix}
export LC_ALL=${LC_ALL:-C.UTF-8} # file names are written in the locale's encoding
export WINEDEBUG=${WINEDEBUG:--all}
export HOME=${WINEPREFIX%/*}/home
if [ -z "${DISPLAY:-}" ] && [ -e "$wine_folder/display" ]; then
    DISPLAY=$(cat "$wine_folder/display")
    export DISPLAY
fi
if [ ! -d "$WINEPREFIX/drive_c" ]; then
    echo "run-wine.sh: no Wine prefix in $WINEPREFIX: run ./dev test windows first" >&2
    exit 1
fi
exec /usr/lib/wine/wine64 "$@"

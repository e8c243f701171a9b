#!/usr/bin/env bash
# Runs a Windows program from a build tree through Wine. Creates a disposable Wine prefix below build/ if there is none.
set -eu
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$root/scripts/wine.sh"
wine_folder=$root/build/wine
export WINEPREFIX=${WINEPREFIX:-$wine_folder/prefix}
export LC_ALL=${LC_ALL:-C.UTF-8} # Wine writes file names in the locale's encoding
export WINEDEBUG=${WINEDEBUG:--all}
export HOME=${WINEPREFIX%/*}/home
if [ -z "${DISPLAY:-}" ] && [ -e "$wine_folder/display" ]; then
    DISPLAY=$(cat "$wine_folder/display")
    export DISPLAY
fi
[ -x "$wine_program" ] || {
    echo "run-wine.sh: Wine's 64-bit program is not at $wine_program: install wine64" >&2
    exit 1
}
if [ ! -d "$WINEPREFIX/drive_c" ]; then
    echo "run-wine.sh: creating a Wine prefix in $WINEPREFIX, which takes a minute, once" >&2
    mkdir -p "$WINEPREFIX" "$HOME"
    wine_folder=${WINEPREFIX%/*} WINEDLLOVERRIDES=winemenubuilder.exe=d boot_wine
fi
exec "${wine[@]}" "$@"

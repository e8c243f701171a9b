# The disposable Wine prefix below build/, its server and its display.

wine_folder=$PWD/build/wine
wine_program=/usr/lib/wine/wine64
# setarch keeps the heap at the same address in every run. At a random address, the heap may cover the page at
# 0x7ffe0000; Wine cannot start without this page.
wine=(setarch --addr-no-randomize "$wine_program")
"${wine[@]:0:2}" true 2>/dev/null || wine=("$wine_program") # some containers forbid setarch

wine_version() {
    "$wine_program" --version
}

display_number() {
    sed 's/^://' "$wine_folder/display"
}

stop_wine() {
    WINEPREFIX=$wine_folder/prefix wineserver -k || true
    kill "$display_process" || true
    rm -f "$wine_folder/display"
}

# Creates the prefix at WINEPREFIX. Uses one processor, because wineboot takes three times as long on several.
boot_wine() {
    local log=$wine_folder/boot.log processor
    processor=$(sed -nE 's/^Cpus_allowed_list:\s*([0-9]+).*/\1/p' /proc/self/status)
    taskset -c "$processor" "${wine[@]}" wineboot -i >"$log" 2>&1 || {
        cat "$log" >&2
        return 1
    }
    # The library reads the version of Windows, and Wine's default version may change.
    "${wine[@]}" winecfg -v win10 >>"$log" 2>&1
    # Keeps message boxes from waiting for a window manager.
    "${wine[@]}" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >>"$log" 2>&1
    wineserver -k || true # stops the server, because the server is bound to one processor
    touch "$wine_folder/booted"
}

# Starts the display and Wine's server, which run until this script ends. Does nothing if the display is
# already running.
start_wine() {
    [ -x "$wine_program" ] || {
        echo "Wine's 64-bit program is not at $wine_program: the Windows tests cannot run." >&2
        return 1
    }
    mkdir -p "$wine_folder"
    if [ -e "$wine_folder/display" ] && [ -e "/tmp/.X11-unix/X$(display_number)" ]; then
        return 0
    fi
    mkfifo "$wine_folder/ready.$$"
    Xvfb -displayfd 3 -screen 0 1024x768x24 3<>"$wine_folder/ready.$$" >"$wine_folder/xvfb.log" 2>&1 &
    display_process=$!
    local number
    read -r -t 30 number <>"$wine_folder/ready.$$" || {
        cat "$wine_folder/xvfb.log" >&2
        echo "Xvfb did not start: the Windows tests cannot run." >&2
        return 1
    }
    rm "$wine_folder/ready.$$"
    echo ":$number" >"$wine_folder/display"
    trap stop_wine EXIT
    export DISPLAY=:$number WINEPREFIX=$wine_folder/prefix WINEDEBUG=-all
    export HOME=$wine_folder/home WINEDLLOVERRIDES=winemenubuilder.exe=d # keeps Wine from writing to the user's home
    mkdir -p "$WINEPREFIX" "$HOME"
    [ -e "$wine_folder/booted" ] || boot_wine
    wineserver -p
    # Starts Wine's services and desktop now: otherwise the first test would start them, and they would keep the test's
    # output open.
    "${wine[@]}" rundll32 user32.dll,GetDesktopWindow >/dev/null 2>&1
}

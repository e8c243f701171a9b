#!/usr/bin/env bash
# What only a shell of the host can bring about: a full disk behind the output, no memory, no rights, a terminal.
#   host.sh BUILD
set -u
app=$(mktemp -d)
trap 'rm -rf "$app"' EXIT
cp -r "$1/bin/rkuinfo" "$1/bin/en-US" "$app"
export HOME=$app XDG_DATA_HOME=$app/data XDG_CONFIG_HOME=$app/config TERM=xterm
mkdir "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"
failed=0

# EXPECTED COMMAND...: what it prints has that in it.
expect() {
    local expected=$1 actual
    shift
    actual=$("$@" 2>&1)
    [[ $actual == *"$expected"* ]] || {
        printf '%s\n  gives: %s\n  not:   %s\n' "$*" "$actual" "$expected"
        failed=1
    }
}

rkuinfo() {
    "$app/rkuinfo" --company Acme --product Widget "$@"
}

onto_full_disk() {
    rkuinfo "$@" >/dev/full
    echo "exit code $?"
}

without_memory() (
    ulimit -v 300000
    tr '\0' '[' </dev/zero | rkuinfo import settings
    echo "exit code $?"
)

# Root may read everything, unless it gives that right up.
without_rights() {
    local drop=()
    [ "$(id -u)" -ne 0 ] || drop=(setpriv --bounding-set -dac_override,-dac_read_search)
    "${drop[@]}" "$@"
}

expect $'rkuinfo: the output cannot be written\nexit code 1' onto_full_disk show
expect $'rkuinfo: the output cannot be written\nexit code 1' onto_full_disk --help
expect $'rkuinfo: out of memory\nexit code 1' without_memory
expect "the user has no roaming application data folder" env XDG_CONFIG_HOME="$app/none" "$app/rkuinfo" doctor
expect "refused by the registry" env XDG_DATA_HOME=/dev/null "$app/rkuinfo" --company Acme provision
printf '[Product]\n' >"$app/TARVO.ini"
chmod 0 "$app/TARVO.ini"
expect "TARVO.ini cannot be read" without_rights "$app/rkuinfo" doctor
expect $'\e[31mmissing' script -qec "$app/rkuinfo languages" /dev/null
expect $'  de-DE  ' env NO_COLOR=1 script -qec "$app/rkuinfo languages" /dev/null
exit $failed

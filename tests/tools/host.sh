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
expect '--language xx-XX' rkuinfo --help
expect '--value NAME' rkuinfo help rm
expect "create it: mkdir $app/none" env XDG_CONFIG_HOME="$app/none" "$app/rkuinfo" doctor
for command in provision doctor "get settings A" "set settings A int 1"; do
    # shellcheck disable=SC2086 # several words
    expect "error 1011, in /dev/null/winhost" env XDG_DATA_HOME=/dev/null "$app/rkuinfo" --company Acme $command
done
mkdir -p "$app/damaged/winhost"
printf 'no registry' >"$app/damaged/winhost/registry.db"
expect $'registry\tHKEY_CURRENT_USER: the registry is damaged' env XDG_DATA_HOME="$app/damaged" "$app/rkuinfo" doctor

# EXPECTED CONTENT [ENCODING]: what the import of such a file says.
importing() {
    printf '%b' "$2" | iconv -t "${3:-UTF-8}" >"$app/file"
    expect "$1" rkuinfo import settings --file "$app/file"
}
importing 'key k: the key occurs twice' '{"values": [], "keys": [{"name": "K", "values": [], "keys": []}, {"name": "k", "values": [], "keys": []}]}'
importing 'value 1: not a value of its type' '{"values": [{"name": "x", "type": "binary", "value": "0g"}], "keys": []}'
importing 'value 1: cannot use at()' '{"values": [1], "keys": []}'
editor='Windows Registry Editor Version 5.00\r\n[HKEY_CURRENT_USER\\Software\\Acme\\Widget\\2018\\en-US\\Settings'
importing 'line 3: no quotation mark' "$editor]\r\n\"open" UTF-16
importing 'line 3: not the name of a value' "$editor]\r\n\"$(printf %01024d 0)\"=\"\"" UTF-16

# An import that is refused in between: at the limit of a file's size, as on a full disk.
{
    echo '{"keys": [], "values": ['
    for i in {1..3000}; do
        printf '{"name": "%d", "type": "string", "value": "%0900d"},\n' "$i" 0
    done
    echo '{"name": "last", "type": "int", "value": 1}]}'
} >"$app/large.json"
rkuinfo provision >/dev/null
rkuinfo set settings before int 1
without_room() (
    trap '' XFSZ
    ulimit -f 1024
    rkuinfo import settings --file "$app/large.json"
    echo "exit code $?"
)
expect $'; nothing was changed\nexit code 1' without_room
expect 'settings 1: not found' rkuinfo get settings 1
expect 1 rkuinfo get settings before
expect $'wrote 3001 of 3001' script -qec "$app/rkuinfo --company Acme --product Widget import settings --file $app/large.json" /dev/null
expect $'last' rkuinfo search settings last

# The registry editor's format.
as_reg() {
    rkuinfo set settings Reg/bytes binary "$(printf '%052d' 0)"
    rkuinfo set settings Reg/int int 5
    rkuinfo set settings Reg/long int64 5
    rkuinfo set settings Reg/text string x
    rkuinfo export settings Reg --format reg | iconv -f UTF-16
}
expect $'00,\\\r\n  00,00,00,00\r\n"int"=dword:00000005\r\n"long"=hex(b):05,00,00,00,00,00,00,00\r\n"text"="x"\r\n' as_reg

mkdir "$app/fr-FR"
expect $'\e[31mempty' script -qec "$app/rkuinfo languages" /dev/null
expect $'  de-DE  ' script -qec "$app/rkuinfo --color never languages" /dev/null
for quiet in NO_COLOR=1 TERM=dumb; do
    expect $'  de-DE  ' env "$quiet" script -qec "$app/rkuinfo languages" /dev/null
done

# What doctor finds of the store, and its remedies, which work; what they print may be pasted.
registry=$XDG_DATA_HOME/winhost/registry.db
damage() { # STATEMENT
    python3 -c 'import sqlite3, sys; store = sqlite3.connect(sys.argv[1]); store.execute(sys.argv[2]); store.commit()' "$registry" "$1"
}
follow_advice() {
    rkuinfo "$@" | grep -oE 'rkuinfo --company [^,]*(json|--all|use)' | sed 's/ and /\n/g' | (cd "$app" && PATH=$app:$PATH && sh)
    rkuinfo doctor
}
printf '[Product]\nCompanyName=Acme\nProductName=Widget\n' >"$app/TARVO.ini"
rm -r "$app/fr-FR"
damage 'UPDATE vals SET sum = sum + 1 WHERE type = 11'
expect $'tree-damaged\tregistry\tHKEY_CURRENT_USER\\Software\\Acme\\Widget\\' rkuinfo doctor
expect '"code": "tree-damaged"' rkuinfo doctor --json
expect $'not exported: HKEY_CURRENT_USER' rkuinfo export product-root --salvage --file "$app/part.json"
expect 'nothing is wrong' follow_advice doctor
rm "$app/TARVO.ini" && mkfifo "$app/TARVO.ini"
expect $'ini-unreadable\t' timeout 10 "$app/rkuinfo" doctor
ln -sf /dev/zero "$app/TARVO.ini"
expect $'ini-unreadable\t' timeout 10 "$app/rkuinfo" doctor
rm "$app/TARVO.ini"
touch "$app/mode.json" && chmod 600 "$app/mode.json"
rkuinfo export settings --file "$app/mode.json"
expect 600 stat -c %a "$app/mode.json"
touch "$XDG_DATA_HOME/winhost/data.mdb"
expect $'note\tearlier-registry\t'"$XDG_DATA_HOME/winhost/data.mdb" rkuinfo doctor
expect "--profile '\$(touch x)\`' use" rkuinfo --profile '$(touch x)`' doctor
chmod -R a-w "$XDG_DATA_HOME"
expect $'tree-unwritable\t' without_rights "$app/rkuinfo" doctor
chmod -R u+w "$XDG_DATA_HOME"
if [ "$(id -u)" -eq 0 ]; then
    chown -R 1234 "$XDG_DATA_HOME/winhost"
    expect 'belongs to another user, number 1234' rkuinfo doctor
    chown -R 0 "$XDG_DATA_HOME/winhost"
fi
damage 'CREATE TABLE more(a)'
expect 'the registry is of a newer version' rkuinfo doctor
exit $failed

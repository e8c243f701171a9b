#!/usr/bin/env bash
# Tests rkuinfo in states that only a shell can create: a full disk, no memory, no access, a terminal, a damaged store.
#   host.sh BUILD
set -u
app=$(mktemp -d)
trap 'rm -rf "$app"' EXIT
cp -r "$1/bin/rkuinfo" "$1/bin/en-US" "$app"
export HOME=$app XDG_DATA_HOME=$app/data XDG_CONFIG_HOME=$app/config TERM=xterm
mkdir "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"
registry=$XDG_DATA_HOME/winhost/registry.db
failed=0

# EXPECTED COMMAND...: the output must contain EXPECTED.
expect() {
    local expected=$1 actual
    shift
    actual=$("$@" 2>&1)
    [[ $actual == *"$expected"* ]] || {
        printf '%s\n  prints: %s\n  not:    %s\n' "$*" "$actual" "$expected"
        failed=1
    }
}

rkuinfo() {
    "$app/rkuinfo" --company Acme --product Widget "$@"
}

damage() { # STATEMENT
    python3 -c 'import sqlite3, sys; store = sqlite3.connect(sys.argv[1]); store.execute(sys.argv[2]); store.commit()' "$registry" "$1"
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

# Root can read everything unless it drops that capability.
without_rights() {
    local drop=()
    [ "$(id -u)" -ne 0 ] || drop=(setpriv --bounding-set -dac_override,-dac_read_search)
    "${drop[@]}" "$@"
}

# Starts rkuinfo in UserDataCache. The library creates the documents folder and makes it the working directory.
start_in_cache() {
    cd "$app/UserDataCache" && env "$@" "$app/rkuinfo" --help >/dev/null && ls "$app/documents"
}

mkdir "$app/UserDataCache" "$app/documents"
echo 'XDG_DOCUMENTS_DIR="$HOME/documents/a"' >"$XDG_CONFIG_HOME/user-dirs.dirs"
expect a start_in_cache
expect $'a\nb' start_in_cache XDG_DOCUMENTS_DIR="$app/documents/b"
expect $'rkuinfo: the output cannot be written\nexit code 1' onto_full_disk show
expect $'rkuinfo: out of memory\nexit code 1' without_memory
expect "$app cannot be read" rkuinfo import settings --file "$app"
expect "create it: mkdir $app/none" env XDG_CONFIG_HOME="$app/none" "$app/rkuinfo" doctor
expect settings "$app/rkuinfo" complete --product X get se
expect $'--file\n--replace' "$app/rkuinfo" complete import settings --
expect '<>' bash -c 'echo "<$("$0" complete get settings se)>"' "$app/rkuinfo" # a command has only one SUBTREE
expect '<>' bash -c 'echo "<$("$0" complete --product s)>"' "$app/rkuinfo" # a product, not a command
expect 'Usage: rkuinfo [OPTIONS] COMMAND' "$app/rkuinfo" manual
expect 'Usage: rkuinfo list [OPTIONS] SUBTREE [KEY]' "$app/rkuinfo" manual
for command in provision doctor "get settings A" "set settings A int 1"; do
    # shellcheck disable=SC2086 # several words
    expect "error 1011, in /dev/null/winhost" env XDG_DATA_HOME=/dev/null "$app/rkuinfo" --company Acme $command
done
mkdir -p "$app/damaged/winhost"
printf 'no registry' >"$app/damaged/winhost/registry.db"
expect $'registry\tHKEY_CURRENT_USER\\Software: the registry is damaged' env XDG_DATA_HOME="$app/damaged" "$app/rkuinfo" doctor

# The import sets a value and creates key A. Key B cannot be created, because all key numbers are in use.
rkuinfo provision >/dev/null
rkuinfo set settings before int 1
cp "$registry" "$app/intact.db"
damage 'UPDATE shape SET last = 9223372036854775807'
printf '{"values": [{"name": "before", "type": "int", "value": 2}], "keys": [%s, %s]}' \
    '{"name": "A", "values": [], "keys": []}' '{"name": "B", "values": [], "keys": []}' >"$app/file.json"
expect '; nothing was changed' rkuinfo import settings --file "$app/file.json"
expect 1 rkuinfo get settings before
cp "$app/intact.db" "$registry"
expect 'bytes to read: 151' script -qec "$app/rkuinfo --company Acme --product Widget import settings --file $app/file.json" /dev/null

cp "$app/en-US/RkUInfoRes.dll" "$app/own.dll"
cp "$1/bin/de-DE/RkUInfoRes.dll" "$app/en-US"
expect $'language-other\ten-US\tthe language\'s RkUInfoRes.dll is of de-DE' rkuinfo doctor
expect $'installed\tlibrary of de-DE' rkuinfo languages
cp "$app/own.dll" "$app/en-US/RkUInfoRes.dll"
mkdir "$app/fr-FR"
expect $'\e[31mempty' script -qec "$app/rkuinfo languages" /dev/null
for quiet in NO_COLOR=1 TERM=dumb; do
    expect $'  de-DE  ' env "$quiet" script -qec "$app/rkuinfo languages" /dev/null
done
rm -r "$app/fr-FR"

# Pastes the commands that rkuinfo suggests into a shell, then runs doctor.
follow_advice() {
    rkuinfo "$@" | grep -oE 'rkuinfo --company [^,]*(json|--all|use)' | sed 's/ and /\n/g' | (cd "$app" && PATH=$app:$PATH && sh)
    rkuinfo doctor
}
printf '[Product]\nCompanyName=Acme\nProductName=Widget\n' >"$app/TARVO.ini"
rkuinfo set settings long int64 1
damage 'UPDATE vals SET sum = sum + 1 WHERE type = 11'
expect $'tree-damaged\tregistry\tHKEY_CURRENT_USER\\Software\\Acme\\Widget\\' rkuinfo doctor
expect '"code": "tree-damaged"' rkuinfo doctor --json
expect 'not exported: HKEY_CURRENT_USER' rkuinfo export product-root --salvage --file "$app/part.json"
expect 'nothing is wrong' follow_advice doctor
touch "$XDG_DATA_HOME/winhost/data.mdb"
expect $'note\tearlier-registry\t'"$XDG_DATA_HOME/winhost/data.mdb" rkuinfo doctor
expect "--profile '\$(touch x)\`' use" rkuinfo --profile '$(touch x)`' doctor
rm "$app/TARVO.ini" && mkfifo "$app/TARVO.ini"
expect $'ini-unreadable\t' timeout 10 "$app/rkuinfo" doctor
ln -sf /dev/zero "$app/TARVO.ini"
expect $'ini-unreadable\t' timeout 10 "$app/rkuinfo" doctor
rm "$app/TARVO.ini"
touch "$app/mode.json" && chmod 600 "$app/mode.json"
rkuinfo export settings --file "$app/mode.json"
expect 600 stat -c %a "$app/mode.json"
chmod -R a-w "$XDG_DATA_HOME"
expect $'tree-unwritable\t' without_rights "$app/rkuinfo" doctor
chmod -R u+w "$XDG_DATA_HOME"
if [ "$(id -u)" -eq 0 ]; then
    chown -R 1234 "$XDG_DATA_HOME/winhost"
    expect 'belongs to the user with ID 1234' rkuinfo doctor
    chown -R 0 "$XDG_DATA_HOME/winhost"
fi
damage 'CREATE TABLE more(a)'
expect 'written by a newer version' rkuinfo doctor
exit $failed

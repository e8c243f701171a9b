#!/usr/bin/env bash
# agreement.sh WINDOWS_PROGRAM HOST_TREE COUNT SEED...: the same random registry calls by Wine and by winhost, of
# whose build tree the program is built first. Fails where an answer differs, and shows it.
set -euo pipefail
source_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
windows_program=$1 host_tree=$2 count=$3
shift 3
[ -e "$host_tree/build.ninja" ] || cmake --preset host -S "$source_folder" -B "$host_tree" >/dev/null
cmake --build "$host_tree" --target agreement >/dev/null
base=/dev/shm # the calls are many, and each write waits for its disk
[ -w $base ] || base=${TMPDIR:-/tmp}
folder=$(mktemp -d "$base/agreement.XXXXXX")
trap 'rm -rf "$folder"' EXIT
for seed; do
    XDG_DATA_HOME=$folder/$seed "$host_tree/bin/agreement" "$seed" "$count" >"$folder/winhost"
    "$source_folder/toolchains/run-wine.sh" "$windows_program" "$seed" "$count" | tr -d '\r' >"$folder/wine"
    if ! cmp -s "$folder/winhost" "$folder/wine"; then
        echo "seed $seed: the first differences, winhost < and Wine >" >&2
        diff "$folder/winhost" "$folder/wine" | cut -c1-300 | head -20 >&2 || true
        exit 1
    fi
    lines=$(wc -l <"$folder/wine")
    [ "$lines" -eq "$count" ]
    total=$((${total:-0} + lines))
done
echo "$total calls agree, of seeds $*"

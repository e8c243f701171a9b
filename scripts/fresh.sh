# Runs the README's two commands as a newcomer would: in a bare Debian root, on a clone of what is committed.

fresh=$PWD/build/fresh

# The root, in a mount namespace of its own, so that nothing stays mounted. Packages that were fetched once are kept.
in_root() {
    as_root unshare --mount --propagation private bash -euc '
        mount -t proc proc "$0/root/proc"
        mount --rbind /dev "$0/root/dev"
        mount --bind "$0/archives" "$0/root/var/cache/apt/archives"
        exec env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb \
            chroot "$0/root" bash -c "$1"' "$fresh" "$1"
}

make_root() {
    local origin=http://deb.debian.org/debian
    as_root rm -rf "$fresh/root"
    mkdir -p "$fresh/archives/partial"
    as_root debootstrap --variant=minbase --cache-dir="$fresh/archives" bookworm "$fresh/root" "$origin" \
        >"$fresh/debootstrap.log" || {
        tail "$fresh/debootstrap.log" >&2
        return 1
    }
    printf 'deb %s main\n' "$origin bookworm" "$origin bookworm-updates" "$origin-security bookworm-security" |
        as_root tee "$fresh/root/etc/apt/sources.list" >/dev/null
    as_root git -c advice.detachedHead=false clone -q --no-hardlinks "file://$PWD" "$fresh/root/root/rkuinfo"
}

test_fresh() {
    local command log status=0
    need debootstrap git
    make_root
    for command in demo test; do
        grep -q "\\./dev $command\\b" README.md || {
            echo "README.md does not name ./dev $command" >&2
            return 1
        }
        log=$fresh/$command.log
        if in_root "cd ~/rkuinfo && ./dev $command" >"$log" 2>&1 </dev/null; then
            echo "fresh: ./dev $command passed"
        else
            status=1
            tail -n 200 "$log"
            echo "fresh: ./dev $command FAILED; all of it is in $log"
        fi
        sed -nE 's/^([a-z-]+: +[0-9]+ passed, .*)/fresh: \1/p' "$log"
    done
    return $status
}

# Runs the documents' commands in a new, minimal Debian root, to check that README and GUIDE name every Debian
# package that the commands need. The ./dev commands in README.md run in a clone of the last commit.

fresh=$PWD/build/fresh

# Runs a command in the root, in a separate mount namespace, so that nothing stays mounted. Downloaded packages are
# kept.
in_root() {
    as_root unshare --mount --propagation private bash -euc '
        mount -t proc proc "$0/root/proc"
        mount --rbind /dev "$0/root/dev"
        mount --bind "$0/archives" "$0/root/var/cache/apt/archives"
        exec env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb \
            DEBIAN_FRONTEND=noninteractive chroot "$0/root" bash -c "$1"' "$fresh" "$1"
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
    echo 'APT::Install-Recommends "false";' | as_root tee "$fresh/root/etc/apt/apt.conf.d/named-only" >/dev/null
    as_root git -c advice.detachedHead=false clone -q --no-hardlinks "file://$PWD" "$fresh/root/root/rkuinfo"
    in_root "apt-get update -qq"
}

# step NAME COMMAND: runs the command in the root, and reports whether the command passed.
step() {
    local log=$fresh/$1.log
    if in_root "cd ~/rkuinfo && $2" >"$log" 2>&1 </dev/null; then
        echo "fresh: $1 passed"
    else
        status=1
        tail -n 200 "$log"
        echo "fresh: $1 FAILED; all of its output is in $log"
    fi
    sed -nE 's/^([a-z-]+: +[0-9]+ passed, .*)/fresh: \1/p' "$log"
}

test_fresh() {
    local name status=0
    need debootstrap git
    make_linux_package
    make_root
    as_root cp build/package/rkuinfo-*-linux.tar.gz "$fresh/root/root/archive"
    for name in README docs/GUIDE; do
        step "${name#docs/}" "tests/docs/check.sh run $name.md fresh ~/archive"
    done
    for name in demo test; do
        grep -q "\\./dev $name\\b" README.md || {
            echo "README.md does not name ./dev $name" >&2
            return 1
        }
        step $name "./dev $name"
    done
    return $status
}

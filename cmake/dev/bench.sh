# Measures ratios on the host, in a home of its own.

run_bench() {
    need_for host
    cmake --preset host -DRKUINFO_BENCH=ON >build/host-configure.log
    cmake --build --preset host --target bench_walk >build/bench-build.log || {
        cat build/bench-build.log >&2
        return 1
    }
    local home=$PWD/build/bench-home
    rm -rf "$home"
    mkdir -p "$home"
    HOME=$home XDG_DATA_HOME=$home XDG_CONFIG_HOME=$home build/host/bin/bench_walk
}

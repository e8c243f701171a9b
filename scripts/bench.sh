# Builds the benchmarks with optimisation and runs them. Writes the figures for the first two tables of
# docs/PERFORMANCE.md to build/bench/results.json. Writes the figures for the large store and those for the
# plot to build/bench/scale.json.

bench=$PWD/build/bench
bench_run=$bench/run # the measured programs write their files here

# Builds a preset's benchmarks in the given folder.
build_bench() {
    local preset=$1 folder=$2
    need_for "$preset"
    cmake --preset "$preset" -B "$folder" -DRKUINFO_TESTS=OFF -DRKUINFO_BENCH=ON >"build/bench-$preset.log" &&
        cmake --build "$folder" --target bench_programs -- >>"build/bench-$preset.log" 2>&1 || {
        cat "build/bench-$preset.log" >&2
        return 1
    }
}

fresh_home() {
    rm -rf "$bench_run"
    mkdir -p "$bench_run/peers"
    export HOME=$bench_run XDG_DATA_HOME=$bench_run/data XDG_CONFIG_HOME=$bench_run/config
}

# loop [TOOL...] STORE OPERATION COUNT: runs bench_loop with an empty folder, under TOOL if given.
loop() {
    rm -rf "$bench_run/loop"
    mkdir "$bench_run/loop"
    "${@:1:$#-3}" "$bench/bin/bench_loop" "${@: -3}" "$bench_run/loop"
}

# Prints the number of instructions that the given number of getValue calls execute. Instructions in registry
# functions are not counted.
own_instructions() {
    loop valgrind --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect='TarvoConfig::getValue*' \
        --toggle-collect='Reg*' ours read "$1" 2>&1 | sed -n 's/.*Collected : //p'
}

# cache_misses LEVEL STORE COUNT: reads 1,000 values in turn, and prints the D1 or LL cache misses of a
# processor with 32 KB of first-level and 512 KB of last-level cache.
cache_misses() {
    loop valgrind --tool=cachegrind --cache-sim=yes --cachegrind-out-file=/dev/null --I1=32768,8,64 --D1=32768,8,64 \
        --LL=524288,8,64 "$2" turn "$3" 2>&1 | sed -n "s/.*$1 *misses: *\([0-9,]*\).*/\1/p" | tr -d ,
}

# Prints the number of system calls that a program makes, in all threads.
calls_of() {
    strace -f -o "$bench_run/calls" "$@" >/dev/null && grep -c = "$bench_run/calls"
}

# Compares the processor time of durable writes with that of SQLite in 11 pairs of runs, and prints the median
# percentage.
write_percent() {
    for _ in {1..11}; do
        echo $((100 * $(loop ours write 20000) / $(loop sqlite write 20000)))
    done | sort -n | sed -n 6p
}

# Prints the counts, such as the number of cache misses, one "name: value" per line.
count_all() {
    local empty client level store
    loop ours read 1 >/dev/null # fills the store
    echo "instructions of the library in one getValue:" \
        $((($(own_instructions 20000) - $(own_instructions 10000)) / 10000))
    for level in D1 LL; do
        for store in ours dconf; do
            echo "$level misses in 1,000 reads in turn, $store:" \
                $((($(cache_misses $level $store 60000) - $(cache_misses $level $store 30000)) / 30))
        done
    done
    echo "processor time of a durable write, as a percentage of SQLite's: $(write_percent)"
    echo "system calls in 1,000 getValue calls:" \
        $(($(loop calls_of ours read 2000) - $(loop calls_of ours read 1000)))
    empty=$(calls_of "$bench/bin/bench_empty")
    client=$(calls_of "$bench/bin/bench_start")
    echo "system calls of a client's start, beyond an empty program's: $((client - empty))"
    count_memory small "$bench/bin/bench_start"
}

# Prints a client's private memory usage, and how much of the store's file the client maps.
count_memory() {
    local tree=$1 program=$2 empty own store
    shift 2
    read -r empty _ < <("$bench/bin/bench_empty" memory)
    read -r own store < <("$program" memory "$@")
    echo "private kilobytes of a client with a $tree tree, beyond an empty program's: $((own - empty))"
    echo "kilobytes of the store's file that it has mapped: $store"
}

bench_table() {
    need valgrind strace
    build_bench host "$bench"
    build_bench windows build/bench-windows
    fresh_home
    "$bench/bin/bench_registry" "$bench/host.jsonl"
    "$bench/bin/bench_peers" "$bench_run/peers" "$bench/peers.jsonl"
    "$bench/bin/bench_process" "$bench/process.jsonl" "$bench/bin"
    bench/tool.py "$bench/bin/rkuinfo" "$bench_run/tool" "$bench/tool.jsonl"
    count_all >"$bench/counts.txt"
    wine_folder=$PWD/build/bench-wine
    start_wine
    toolchains/run-wine.sh build/bench-windows/bin/bench_registry.exe "Z:$bench/windows.jsonl"
    bench/report.py table "$bench"
}

# Measures how costs grow with the size of the store. The stores are in memory, so that disk access is not
# measured. Filling them takes half a minute.
bench_scale() {
    build_bench host "$bench"
    fresh_home
    stores=$(mktemp -d /dev/shm/rkuinfo-bench.XXXXXX)
    trap 'rm -rf "$stores"' EXIT
    rm -f "$bench"/{small,large}.txt
    in_store small bench_large fill 100
    in_store large bench_large fill 100000
    for _ in {1..11}; do
        in_store small bench_large measure 100 >>"$bench/small.txt"
        in_store large bench_large measure 100000 >>"$bench/large.txt"
    done
    XDG_DATA_HOME=$stores/large count_memory large "$bench/bin/bench_large" 100000 >"$bench/memory.txt"
    "$bench/bin/bench_large" bulk 0 >>"$bench/memory.txt" # uses a store on disk
    in_store big bench_large big "$bench/big.jsonl"
    for size in 10 1000 100000 1000000; do
        in_store "growth$size" bench_growth --benchmark_filter="/$size\$" --benchmark_repetitions=9 \
            --benchmark_min_time=0.05 --benchmark_out="$bench/growth$size.json" --benchmark_out_format=json >/dev/null 2>&1
    done
    bench/report.py scale "$bench" docs/scale.png
}

# Runs a program on the given store.
in_store() {
    local store=$1 program=$2
    shift 2
    XDG_DATA_HOME=$stores/$store "$bench/bin/$program" "$@"
}

run_bench() {
    need libbenchmark-dev libsqlite3-dev libglib2.0-dev libdconf-dev dconf-cli qt6-base-dev python3-matplotlib
    case ${1:-table} in
    table) bench_table ;;
    scale) bench_scale ;;
    *)
        usage >&2
        return 2
        ;;
    esac
}

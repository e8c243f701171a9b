# Runs each fuzz target under libFuzzer, starting from the inputs in fuzz/corpus and those found by earlier runs.

run_fuzz() {
    local seconds=${1:-60} target found status=0
    [[ $seconds =~ ^[0-9]+$ ]] || {
        echo "./dev fuzz: '$seconds' is not a number of seconds" >&2
        return 2
    }
    build fuzz langpacks $(ls fuzz/corpus | sed 's/^/fuzz_/')
    for target in fuzz/corpus/*; do
        target=${target##*/}
        found=build/fuzz/found/$target
        mkdir -p "$found"
        if build/fuzz/bin/fuzz_"$target" -max_total_time="$seconds" -max_len=8192 -timeout=10 -print_final_stats=1 \
            -artifact_prefix="build/fuzz/$target-" "$found" "fuzz/corpus/$target" >"build/fuzz/$target.log" 2>&1; then
            echo "$target: $(sed -n 's/^stat::number_of_executed_units: *//p' "build/fuzz/$target.log") runs in" \
                "$seconds s, nothing found"
        else
            tail -n 40 "build/fuzz/$target.log"
            echo "$target: FAILED; once fixed, add its input to fuzz/corpus/$target"
            status=1
        fi
    done
    return $status
}

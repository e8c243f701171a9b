# Runs the reliability tests at full length, which takes a few minutes.

# run_cases FILTER PROGRAM...: runs each case in a separate process, like ctest.
run_cases() {
    local filter=$1 case suite=''
    shift
    while read -r case _; do # gtest may list a parameter after the name of a case
        case $case in
        *.) suite=$case ;;
        *) RKUINFO_STRESS=1 "$@" --gtest_brief=1 --gtest_filter="$suite$case" </dev/null ;;
        esac
    done < <("$@" --gtest_list_tests --gtest_filter="$filter" </dev/null | tr -d '\r' | grep -v '^Running')
}

run_stress() {
    echo '== Faults, kills, many at once, disks and damaged files'
    build host rkuinfo_tests
    run_cases 'Faults.*:Storm.*:Store.*:*Script.*:*Disk.*:Host.*' build/host/bin/rkuinfo_tests
    echo '== The same threads under ThreadSanitizer'
    build tsan rkuinfo_tests
    run_cases 'Locks.*:Storm.Concurrent*' build/tsan/bin/rkuinfo_tests
    echo '== The store beside raw registry calls'
    local seed=$RANDOM
    build host store_oracle
    echo "a million operations with the seed $seed"
    HOME=$PWD/build/host/oracle XDG_DATA_HOME='' build/host/bin/store_oracle 1000000 "$seed"
    echo '== Agreement of winhost with Wine'
    build host agreement_tests
    build windows agreement_tests store_oracle
    start_wine
    toolchains/run-wine.sh build/windows/bin/store_oracle.exe 100000 "$seed"
    rm -rf build/{host,windows}/agreement # removes the trace files of runs with other seeds
    run_cases '*' build/host/bin/agreement_tests
    run_cases '*' toolchains/run-wine.sh build/windows/bin/agreement_tests.exe
    diff -r build/host/agreement build/windows/agreement
}

# Runs clang-tidy over everything that the host build compiles.

run_tidy() {
    need clang-tidy
    need_for host
    list_commands
    sed -n "s|^  \"file\": \"$PWD/\(.*\)\".*|\1|p" build/tidy/compile_commands.json |
        sort -u |
        xargs -P "$(nproc)" -I {} clang-tidy -p build/tidy --quiet --extra-arg=-Wno-unknown-warning-option {}
}

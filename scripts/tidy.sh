# Runs clang-tidy over everything that the host build compiles.

run_tidy() {
    need clang-tidy
    need_for host
    cmake --preset host -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >build/host-configure.log
    sed -n "s|^  \"file\": \"$PWD/\(.*\)\".*|\1|p" build/host/compile_commands.json |
        sort -u |
        xargs -P "$(nproc)" -I {} clang-tidy -p build/host --quiet --extra-arg=-Wno-unknown-warning-option {}
}

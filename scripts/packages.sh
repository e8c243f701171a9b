# Installs the packages that this machine lacks, and prints their names.

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

need() {
    local package missing=()
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing with apt-get: ${missing[*]}" >&2
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
        >build/apt-get.log 2>&1 || {
        cat build/apt-get.log >&2
        echo "Could not install: ${missing[*]}" >&2
        return 1
    }
}

# need_for PRESET [ON|OFF]: installs what a build of the preset needs; OFF omits the tests. For every target, MinGW's
# binutils build the language libraries.
need_for() {
    local preset=$1 packages=(cmake ninja-build libcli11-dev nlohmann-json3-dev)
    case $preset in
    windows) packages+=(g++-mingw-w64-x86-64-posix) ;;
    visual-cpp*) packages+=(binutils-mingw-w64-x86-64 clang-19 clang-tools-19 lld-19 llvm-19 libc++-19-dev libwine-dev) ;;
    asan | fuzz) packages+=(binutils-mingw-w64-x86-64 clang libclang-rt-dev libsqlite3-dev) ;;
    *) packages+=(binutils-mingw-w64-x86-64 g++ libsqlite3-dev) ;;
    esac
    case $preset:${2:-ON} in
    *:OFF) ;;
    windows:* | visual-cpp*:*) packages+=(clang g++ git googletest wine wine64 xvfb) ;;
    *) packages+=(clang doxygen g++ git libgtest-dev pkgconf) ;;
    esac
    need "${packages[@]}"
}

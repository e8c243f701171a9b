# Installs what this machine lacks, saying so.

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
    echo "Installing with apt-get: ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
        >build/apt-get.log 2>&1 || {
        cat build/apt-get.log >&2
        echo "Could not install: ${missing[*]}" >&2
        return 1
    }
}

# What a preset is built with; the language libraries are made by the Windows tools on every target.
need_for() {
    need git g++ clang cmake ninja-build g++-mingw-w64-x86-64-posix \
        libcli11-dev nlohmann-json3-dev
    case $1 in
    windows) need googletest wine wine64 xvfb ;;
    visual-cpp*)
        need googletest wine wine64 xvfb clang-19 clang-tools-19 lld-19 llvm-19 libc++-19-dev libwine-dev
        ;;
    asan | fuzz) need libclang-rt-dev libgtest-dev libsqlite3-dev pkgconf ;;
    *) need libgtest-dev libsqlite3-dev pkgconf doxygen ;;
    esac
}

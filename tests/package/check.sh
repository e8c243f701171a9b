#!/usr/bin/env bash
# Checks the installed package.
#   check.sh install BUILD PREFIX          installs a build tree
#   check.sh contents PREFIX TARGETS LANGUAGE...  compares the files with contents.txt; none may contain the build path
#   check.sh hardening PREFIX IMPORTS [FLAG]...  checks the loader flags of the Windows files, and compares
#                                                the libraries that the DLLs import with the file IMPORTS
#   check.sh reproducible BUILD PRESET FILE...   builds the libraries again in another folder, and compares each FILE
#   check.sh consumer PREFIX WORK [CMAKE_OPTION]...  builds and runs the client in tests/consumer
#   check.sh pkgconfig PREFIX WORK         builds the client's module and loader without CMake, and runs them
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
mode=$1
shift

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# Moves the installed files, because a package must work in any folder.
install_package() {
    rm -rf "$2" "$2.installed"
    cmake --install "$1" --prefix "$2.installed" >/dev/null
    mv "$2.installed" "$2"
}

check_contents() {
    # shellcheck disable=SC2059 # repeats a path with LANGUAGE for each
    diff <(awk -v targets="[$2]" '$1 ~ targets { print $2 }' "${0%/*}/contents.txt" | while read -r path; do
        printf "${path/LANGUAGE/%s}\n" "${@:3}"
    done | LC_ALL=C sort) <(cd "$1" && find . ! -type d -printf '%P\n' | LC_ALL=C sort) || fail "The package's contents changed."
    ! grep -rlF --exclude='*.pdb' -e "$root" "$1" || fail "These files name the folder that they were built in."
    (cd "$1/share/doc/RkUInfo" && grep -ohE '\]\([^)#: ]+' ./*.md | sed 's/^..//' | while read -r link; do
        [ -e "$link" ] || fail "The documents lead nowhere: $link"
    done)
    grep -ow 'm_[A-Za-z]*' "$1/share/rkuinfo/RkUInfo.natvis" | while read -r field; do
        grep -rqw "$field" "$1/include" || fail "RkUInfo.natvis shows a field that does not exist: $field"
    done
}

check_hardening() {
    local objdump=x86_64-w64-mingw32-objdump imports=$2 file headers flag
    for file in "$1"/bin/Rk*.dll "$1"/bin/*.exe; do
        [ -e "$file" ] || continue
        headers=$("$objdump" -p "$file")
        for flag in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT "${@:3}"; do
            grep -q "$flag" <<<"$headers" || fail "$file: not linked for $flag"
        done
        grep -qE 'Entry 5 0*[1-9a-f][0-9a-f]* 0*[1-9a-f][0-9a-f]* Base Relocation' <<<"$headers" ||
            fail "$file: has no relocations"
        ! "$objdump" -h "$file" | grep CODE | grep -v READONLY || fail "$file: has writable code"
    done
    diff "$imports" <(for file in RkOsBase RkUInfo; do
        "$objdump" -p "$1/bin/$file.dll" | sed -n "s/.*DLL Name: /$file.dll /p" | LC_ALL=C sort
    done) || fail "The libraries import from others than before."
    "$objdump" -p "$1/bin/RkUInfo.dll" | grep DisableThreadLibraryCalls >/dev/null ||
        fail "RkUInfo.dll: is called for every thread"
}

check_reproducible() {
    local build=$1 preset=$2 again=$1/again source=$1/again/source file
    shift 2
    rm -rf "$again"
    mkdir -p "$source"
    if [ "$preset" = visual-cpp ]; then
        source=$root # clang-cl derives names in anonymous namespaces from the path of the source
    else
        tar -C "$root" --exclude=./build --exclude=./.git --exclude=./tests -cf - . | tar -C "$source" -xf -
    fi
    (cd "$source" && cmake --preset "$preset" -B "$again/build" -DRKUINFO_TESTS=OFF -DRKUINFO_CCACHE=OFF >/dev/null)
    cmake --build "$again/build" --target RkUInfo >/dev/null
    for file in "$@"; do
        cmp "$build/$file" "$again/build/$file"
    done
}

# Makes the client store its settings below $1.
new_home() {
    export HOME=$1/home XDG_DATA_HOME=$1/home/data XDG_CONFIG_HOME=$1/home/config
    mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"
}

check_consumer() {
    local prefix=$1 work=$2
    shift 2
    rm -rf "$work"
    cmake -S "$root/tests/consumer" -B "$work" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DRkUInfo_DIR="$prefix/lib/cmake/RkUInfo" "$@" >/dev/null
    cmake --build "$work"
    new_home "$work"
    ctest --test-dir "$work" --verbose --no-tests=error
}

check_pkgconfig() {
    local flags sources=$root/tests/consumer
    flags=$(PKG_CONFIG_PATH=$1/lib/pkgconfig pkg-config --cflags --libs rkuinfo)
    rm -rf "$2"
    mkdir -p "$2"
    cp -r "$1/lib/rkuinfo/en-US" "$2"
    # shellcheck disable=SC2086 # flags are words
    c++ -std=c++14 -fPIC -shared "$sources/module.cpp" $flags -Wl,-rpath,"$1/lib" -o "$2/module.so"
    # shellcheck disable=SC2086
    c++ -std=c++14 "$sources/loader.cpp" $flags -Wl,-rpath,"$1/lib" -o "$2/loader"
    new_home "$2"
    "$2/loader" "$2/module.so"
}

case $mode in
install) install_package "$@" ;;
*) "check_$mode" "$@" ;;
esac

# Builds the library in the ways that its users do: with each kind of CMake build, installed, and as part of another
# project.

builds=$PWD/build/builds

# row NAME FUNCTION ARGUMENT...: calls the function and reports whether it passed; its output is in NAME.log.
row() {
    local name=$1 log=$builds/$1.log
    shift
    rm -rf "${builds:?}/$name"
    if "$@" "$builds/$name" >"$log" 2>&1; then
        echo "$name: passed"
    else
        echo "$name: FAILED; see $log"
        tail -n 20 "$log"
        failures=1
    fi
}

# Builds this project on its own: the library, the languages and one example, without warnings.
alone() {
    local folder=${*: -1}
    cmake -S . -B "$folder" -DRKUINFO_TESTS=OFF -DCMAKE_COMPILE_WARNING_AS_ERROR=ON "${@:1:$#-1}" &&
        cmake --build "$folder" --target RkUInfo langpacks launcher
}

no_build_type() {
    alone -G Ninja "$1" && grep -q -e '-O2 -g' "$1/build.ninja"
}

# Checks that each configuration's folder contains the program and the languages.
several_configurations() {
    local folder=${*: -1} configuration
    alone -G 'Ninja Multi-Config' "$@" &&
        cmake --build "$folder" --config Release --target RkUInfo langpacks launcher &&
        for configuration in Debug Release; do
            ls "$folder/bin/$configuration"/launcher* "$folder/bin/$configuration/de-DE/RkUInfoRes.dll" || return 1
        done
}

# guest_starts FOLDER: runs the program in that folder, for a user who has no settings.
guest_starts() {
    local run=("$1/guest")
    [ ! -e "$1/guest.exe" ] || run=(toolchains/run-wine.sh "$1/guest.exe")
    mkdir -p "$1/home"
    [ "$(HOME=$1/home XDG_DATA_HOME='' "${run[@]}" | tr -d '\r')" = 3 ]
}

# Builds a project that includes this one. Checks that the project's program starts from the build folder, that the
# installed program starts after the build folder has been removed, and that CMake rejects an unknown language.
guest() {
    local folder=${*: -1}
    local build=$folder/build options=(-G Ninja -DCMAKE_BUILD_TYPE=Release "${@:1:$#-1}")
    cmake -S tests/guest -B "$build" "${options[@]}" && cmake --build "$build" || return 1
    # Windows would read a UTF-8 file in the ANSI code page; Wine and winhost read both encodings correctly.
    [ "$(od -An -tx1 -N2 "$build/TARVO.ini")" = ' ff fe' ] || return 1
    ! find "$folder" -name RkUInfoRes.dll | grep -v 'en-US\|de-DE' || return 1 # the project has no other languages
    guest_starts "$build" && cmake --install "$build" --prefix "$folder/package" || return 1
    ! cmake -S tests/guest -B "$build" -DGUEST_LANGUAGES=xx-XX 2>"$folder/refused" &&
        tr -s ' \n' ' ' <"$folder/refused" | grep 'xx-XX.* cs-CZ, de-DE, en-US' || return 1
    rm -rf "$build"
    guest_starts "$folder/package/bin"
}

# installed BINDIR LIBDIR FOLDER: installs the package, starts the client and builds a project that uses the package.
# Checks that uninstalling removes every file.
installed() {
    local folder=$3 place=$3/stage lib=$2
    [ "${lib#/}" != "$lib" ] || lib=$folder/prefix/$lib
    cmake -S . -B "$folder" -G Ninja -DRKUINFO_TESTS=OFF -DCMAKE_INSTALL_PREFIX="$folder/prefix" \
        -DCMAKE_INSTALL_BINDIR="$1" -DCMAKE_INSTALL_LIBDIR="$2" &&
        cmake --build "$folder" --target shipped &&
        DESTDIR=$place cmake --install "$folder" && [ ! -e "$folder/prefix" ] && [ ! -e "$lib" ] &&
        diff <(sed "s,^,$place," "$folder/install_manifest.txt" | sort) <(find "$place" ! -type d | sort) &&
        DESTDIR=$place cmake --build "$folder" --target uninstall || return 1
    ! find "$place" ! -type d -o -name RkUInfo -o -name rkuinfo | grep . || return 1
    cmake --install "$folder" && "$folder/prefix/$1/rkuinfo" --version &&
        rm -rf "$folder/guest" && guest -DRkUInfo_DIR="$lib/cmake/RkUInfo" "$folder/guest" &&
        ls "$(PKG_CONFIG_PATH=$lib/pkgconfig pkg-config --variable=libdir rkuinfo)/libRkUInfo.so" &&
        cmake --build "$folder" --target uninstall
}

# Builds one package with the libraries for both of Visual C++'s runtimes. Checks that a client is linked with the
# libraries for its own runtime, and that without these libraries the client's build fails with a clear error.
both_runtimes() {
    local folder=$1 client=$1/consumer configuration
    local toolchain=-DCMAKE_TOOLCHAIN_FILE=$PWD/toolchains/visual-cpp.cmake
    for configuration in RelWithDebInfo Debug; do
        cmake --preset visual-cpp -B "$folder/$configuration" -DCMAKE_BUILD_TYPE="$configuration" &&
            cmake --build "$folder/$configuration" --target shipped || return 1
    done
    cmake --install "$folder/RelWithDebInfo" --prefix "$folder/package" &&
        cmake -S tests/consumer -B "$client" -G 'Ninja Multi-Config' "$toolchain" -DCMAKE_PREFIX_PATH="$folder/package" || return 1
    ! cmake --build "$client" --config Debug >"$folder/refused" && grep 'no libraries for this config' "$folder/refused" &&
        ! cmake -S tests/consumer -B "$folder/host" -DCMAKE_PREFIX_PATH="$folder/package" 2>"$folder/refused" &&
        tr -s ' \n' ' ' <"$folder/refused" | grep 'is for Visual C++ x64 .* this project is for Linux' &&
        cmake --install "$folder/Debug" --prefix "$folder/package" || return 1
    cmake "$client" || return 1
    for configuration in Release Debug; do
        cmake --build "$client" --config "$configuration" &&
            ctest --test-dir "$client" -C "$configuration" --output-on-failure --no-tests=error || return 1
    done
    cmp "$client/Release/RkUInfo.dll" "$folder/package/bin/RkUInfo.dll" &&
        cmp "$client/Debug/RkUInfo.dll" "$folder/package/debug/bin/RkUInfo.dll" &&
        cmp "$client/Debug/RkUInfo.pdb" "$folder/package/debug/bin/RkUInfo.pdb"
}

# Checks that the same sources produce the same libraries. ./dev package makes the same check for the
# libraries built with MinGW.
reproducible() {
    build visual-cpp RkUInfo &&
        tests/package/check.sh reproducible "$PWD/build/visual-cpp" visual-cpp bin/RkOsBase.dll bin/RkUInfo.dll \
            bin/RkOsBase.pdb bin/RkUInfo.pdb lib/RkOsBase.lib lib/RkUInfo.lib
}

# Installs the Debian packages in a minimal Debian system and builds a program with them. Checks that the program
# starts, and that it still starts after the packages have been removed.
debian_packages() {
    source scripts/package.sh
    source scripts/fresh.sh
    need debootstrap git
    make_debian_packages && make_root && as_root cp build/package/*.deb "$fresh/root/root/" && in_root '
        cd /root
        apt-get install -qq -y ./*.deb g++ cmake ninja-build &&
            cmake -G Ninja -S /usr/share/doc/librkuinfo-dev/examples/hello -B hello && cmake --build hello &&
            [ "$(hello/hello)" = "start 1" ] && [ "$(rkuinfo --program hello get settings Starts)" = 1 ] &&
            apt-get purge -qq -y librkuinfo2018 && ! ls -d /usr/lib/*/*rkuinfo* /usr/bin/rkuinfo &&
            [ "$(hello/hello)" = "start 2" ]'
}

run_builds() {
    local windows=-DCMAKE_TOOLCHAIN_FILE=$PWD/toolchains/mingw-w64.cmake type
    failures=0
    need_for host
    need_for visual-cpp
    mkdir -p "$builds"
    for type in Release MinSizeRel Debug; do
        row "$type" alone -G Ninja -DCMAKE_BUILD_TYPE="$type"
    done
    row no-build-type no_build_type
    row multi-config several_configurations
    row unity alone -G Ninja -DCMAKE_UNITY_BUILD=ON
    row clang alone -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++
    row c++23 alone -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_STANDARD=23
    row lto alone -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INTERPROCEDURAL_OPTIMIZATION=ON
    row mingw-Release alone -G Ninja -DCMAKE_BUILD_TYPE=Release "$windows"
    row mingw-multi-config several_configurations "$windows"
    row mingw-lto alone -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INTERPROCEDURAL_OPTIMIZATION=ON "$windows"
    start_wine
    row guest guest
    row guest-mingw guest "$windows"
    row guest-visual-cpp guest -DCMAKE_TOOLCHAIN_FILE="$PWD/toolchains/visual-cpp.cmake"
    row both-runtimes both_runtimes
    row reproducible-visual-cpp reproducible
    row install-deep installed deep/er/bin lib/x86_64-linux-gnu
    row install-absolute installed bin "$builds/absolute/lib"
    row debian debian_packages
    return $failures
}

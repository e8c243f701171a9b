# Makes the archives that ship, in build/package/: the same files give the same archive, and the same sources the same
# Windows libraries.

# Builds and installs a preset, and lists its files; their times are the commit's.
stage() {
    local preset=$1 version time
    build "$preset" shipped
    version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "build/$preset/CMakeCache.txt")
    name=rkuinfo-$version-$2
    rm -rf "build/package/$name"*
    cmake --install "build/$preset" --prefix "$PWD/build/package/$name" >"build/$preset-install.log"
    cp -r build/host/reference/html "build/package/$name/share/doc/RkUInfo/"
    cp "build/package/$name/share/doc/RkUInfo/LICENSE" "build/package/$name/"
    sed -E 's,\]\(([A-Z]),](share/doc/RkUInfo/\1,g' docs/PACKAGE.md >"build/package/$name/README.md"
    time=$(git log -1 --format=%cI)
    find "build/package/$name" -exec touch --no-dereference --date="$time" {} +
    files=$(cd build/package && find "$name" ! -type d | LC_ALL=C sort)
}

make_linux_package() {
    local name files
    mkdir -p build/package
    build host reference
    stage host linux
    tar -C build/package --owner=0 --group=0 --numeric-owner -cf - -T - <<<"$files" | gzip -n >"build/package/$name.tar.gz"
    echo "build/package/$name.tar.gz"
}

make_packages() {
    local name files
    need zip
    make_linux_package
    stage windows windows
    tests/package/check.sh reproducible "$PWD/build/windows" windows bin/RkOsBase.dll bin/RkUInfo.dll \
        lib/libRkOsBase.dll.a lib/libRkUInfo.dll.a
    (cd build/package && TZ=UTC zip -q -X -@ "$name.zip" <<<"$files")
    echo "build/package/$name.zip"
}

# Builds the release packages in build/package/. The same installed files always produce the same archive. The same
# sources always produce the same Windows libraries.

# stage PRESET SUFFIX: builds and installs a preset in the folder $name, and sets $files. Each file gets
# the timestamp of the last commit.
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

# Builds Debian packages with the flags and the layout that Debian itself uses. Checks each error explicitly, because
# set -e has no effect when scripts/builds.sh calls this function.
make_debian_packages() {
    need dpkg-dev lintian
    need_for host OFF
    mkdir -p build/package
    (
        eval "$(dpkg-buildflags --export=sh)"
        CXXFLAGS+=" $CPPFLAGS"
        cmake --preset host -B build/debian -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_INSTALL_DOCDIR=share/doc/librkuinfo-dev \
            -DRKUINFO_TESTS=OFF -DRKUINFO_SPLIT_DEBUG=OFF -DCPACK_PACKAGE_CONTACT="$(git log -1 --format='%an <%ae>')" >build/debian-configure.log
    ) || return
    cmake --build build/debian --target shipped || return
    rm -f build/package/*.deb
    (cd build/debian && SOURCE_DATE_EPOCH=$(git log -1 --format=%ct) cpack >../debian-cpack.log && mv ./*.deb ../package/) || return
    lintian --allow-root build/package/*.deb && ls build/package/*.deb
}

make_packages() {
    local name files
    need zip
    make_linux_package
    make_debian_packages
    stage windows windows
    tests/package/check.sh reproducible "$PWD/build/windows" windows bin/RkOsBase.dll bin/RkUInfo.dll \
        lib/libRkOsBase.dll.a lib/libRkUInfo.dll.a
    (cd build/package && TZ=UTC zip -q -X -@ "$name.zip" <<<"$files")
    echo "build/package/$name.zip"
}

# Builds libc++ from Debian's source package: the test suite for Visual C++'s ABI needs the whole library.

libcxx_package=llvm-toolchain-19

# Downloads the sources of libc++ once, and prints the path of their src folder. For this download, apt stores
# its package lists in build/, so the machine's own lists do not change.
libcxx_sources() {
    local folder=$PWD/build/libcxx archive
    if [ ! -e "$folder/src/string.cpp" ]; then
        mkdir -p "$folder/lists/partial"
        echo 'deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] http://deb.debian.org/debian bookworm main' \
            >"$folder/sources.list"
        local apt=(apt-get -qq -o "Dir::Etc::SourceList=$folder/sources.list" -o Dir::Etc::SourceParts=- -o
            "Dir::State::Lists=$folder/lists" -o "Dir::Cache=$folder" -o Dir::Cache::archives= -o APT::Sandbox::User=)
        echo "Downloading the sources of $libcxx_package (about 165 MB)" >&2
        "${apt[@]}" update >&2
        (cd "$folder" && "${apt[@]}" source --download-only "$libcxx_package" >&2)
        archive=$(ls "$folder"/*.orig.tar.*z)
        tar -C "$folder" -xf "$archive" --strip-components=2 \
            --wildcards --no-wildcards-match-slash '*/libcxx/src'
        rm -rf "$folder/lists" "$folder/${libcxx_package}_"*
    fi
    echo "$folder/src"
}

# Builds the library once.
make_libcxx() {
    local libraries=$PWD/build/visual-cpp-libraries
    [ -e "$libraries/libcxx.lib" ] || toolchains/visual-cpp/make-libraries.sh "$libraries" "$(libcxx_sources)"
}

#!/usr/bin/env bash
# make-libraries.sh FOLDER            builds the libraries that visual-cpp.cmake links with, unless they are up to date
# make-libraries.sh FOLDER SOURCES    builds libcxx.lib from SOURCES, the src folder of libc++
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
libraries=$1
wine_dlls=/usr/lib/x86_64-linux-gnu/wine/x86_64-windows
wine_headers=/usr/include/wine/wine

# Searches the same header folders as visual-cpp.cmake.
compile=(clang-cl-19 --target=x86_64-pc-windows-msvc19.40 /nologo /c /X)
for headers in "$here/libcxx" /usr/lib/llvm-19/include/c++/v1 "$here/include" /usr/lib/llvm-19/lib/clang/19/include \
    "$wine_headers/msvcrt" "$wine_headers/windows"; do
    compile+=(/clang:-isystem "/clang:$headers")
done
compile+=(-DWINE_UNICODE_NATIVE -D_LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS /EHsc /MD /O2 /GS- /Brepro)

# Creates an import library from a Wine DLL, because Wine's own import libraries do not match its DLLs.
make_import_library() {
    local name=$1 definitions=$2/$1.def
    {
        printf 'LIBRARY %s.dll\nEXPORTS\n' "$name"
        llvm-readobj-19 --coff-exports "$wine_dlls/$name.dll" | sed -n 's/^ *Name: \(..*\)/  "\1"/p'
    } >"$definitions"
    llvm-dlltool-19 -m i386:x86-64 -d "$definitions" -l "$2/$name.lib"
}

make_libraries() {
    local work=$1 name
    for name in ucrtbase vcruntime140 msvcp140 kernel32 advapi32 user32 gdi32 shell32 shlwapi ole32 oleaut32 comdlg32 \
        version; do
        make_import_library "$name" "$work"
    done
    # CMake links every program with uuid.lib and winspool.lib. No program uses any of their symbols, so any
    # library will do.
    cp "$work/ole32.lib" "$work/uuid.lib"
    cp "$work/user32.lib" "$work/winspool.lib"

    # The -- is needed because clang-cl would read a path such as /work/... as the option /w.
    for name in start dll dllmain main wmain statics guards heap; do
        "${compile[@]}" /std:c++20 /W4 /WX "/Fo$work/" -- "$here/runtime/$name.cpp"
    done
    "${compile[@]}" /std:c++20 /W4 /WX /GR- "/Fo$work/" -- "$here/runtime/type_info.cpp"
    (cd "$work" && llvm-lib-19 /nologo /out:start.lib ./*.obj) # relative names, because the library contains them
    "${compile[@]}" /std:c++20 /W4 /WX "/Fo$work/" -- "$here/libcxx/few.cpp"
    (cd "$work" && llvm-lib-19 /nologo /out:few.lib few.obj)
}

make_libcxx() {
    local sources=$1 work=$2 file
    compile+=(/clang:-std=c++23 -w -D_LIBCPP_BUILDING_LIBRARY -D_LIBCPP_HAS_NO_TIME_ZONE_DATABASE
        -DLIBCXX_BUILDING_LIBCXXABI_NO -D_CRT_STDIO_ISO_WIDE_SPECIFIERS
        "-I$sources" "-I$sources/include" "/FI$here/libcxx/build.h")
    for file in "$sources"/*.cpp "$sources"/filesystem/*.cpp "$sources"/ryu/*.cpp "$sources"/support/win32/*.cpp; do
        case $file in
        *legacy_pointer* | *int128* | *compiler_rt_shims* | */new.cpp) ;;
        *) printf '%s\0--\0%s\0' "/Fo$work/$(tr / _ <<<"${file#"$sources/"}").obj" "$file" ;;
        esac
    done | xargs -0 -n 3 -P "$(nproc)" "${compile[@]}"
    llvm-lib-19 /nologo "/out:$work/libcxx.lib" "$work"/*.obj
}

mkdir -p "$libraries"
work=$libraries/work.$$
trap 'rm -rf "$work"' EXIT
mkdir "$work"
if [ $# -gt 1 ]; then
    make_libcxx "$2" "$work"
    mv "$work/libcxx.lib" "$libraries"
    exit
fi
if [ -e "$libraries/made" ] && [ -z "$(find "$here" -newer "$libraries/made" -print -quit)" ]; then
    exit
fi
make_libraries "$work"
mv "$work"/*.lib "$libraries"
touch "$libraries/made"

#!/usr/bin/env bash
# Compares docs/ABI.md with the public headers, and exports.txt with the library.
#   check.sh figures CLANG...             compares the layouts and slots of docs/ABI.md with those that clang dumps
#   check.sh client COMPILER...           compiles a C++14 client that asserts the layouts; warnings are errors
#   check.sh refused COMPILER...          checks the messages with which the headers reject unsupported options
#   check.sh exports LIBRARY NM|OBJDUMP   checks that the library exports exactly the names in exports.txt
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$here/../..
strict=(-fsyntax-only -Wall -Wextra -pedantic -Werror)
mode=$1
shift

block() {
    sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/p" "$root/docs/ABI.md" | sed '1d;$d'
}

compile() {
    local source=$1
    shift
    "$@" -std=c++14 -I"$root/include" -I"$root/rkosbase/include" -x c++ "$source"
}

dumps() {
    local options=("$@" -DRKUINFO_BUILD -DRKOSBASE_BUILD -fexceptions)
    compile "$here/classes.cpp" "${options[@]}" -fsyntax-only -Xclang -fdump-record-layouts-complete
    compile "$here/classes.cpp" "${options[@]}" -S -emit-llvm -o /dev/null -Xclang -fdump-vtable-layouts
}

client() {
    printf '#include <RkUInfo.h>\n#include <cstddef>\n'
    block text | awk '
        /: size / {
            class = $1
            sub(/:$/, "", class)
            sub(/,$/, "", $3)
            printf "static_assert(sizeof(%s) == %d && alignof(%s) == %d, \"\");\n", class, $3, class, $5
        }
        /^ +[0-9]+ .* m_[A-Za-z]+$/ {
            printf "static_assert(offsetof(%s, %s) == %d, \"\");\n", class, $NF, $1
        }'
    block cpp
}

# refuses HEADER OPTION... -- SENTENCE COMPILER...
refuses() {
    local header=$1 options=() errors
    shift
    while [ "$1" != -- ]; do
        options+=("$1")
        shift
    done
    if errors=$(echo "#include <$header>" | compile - "${@:3}" "${options[@]}" -fsyntax-only 2>&1); then
        echo "$header compiles with ${options[*]}"
        return 1
    fi
    grep -q "$2" <<<"$errors" || {
        echo "$header, ${options[*]}: not refused by '$2' but:"
        head -5 <<<"$errors"
        return 1
    }
}

# Prints exports.txt in c++filt's notation for the GNU ABI: without return types and without const on
# parameters.
in_gnu_terms() {
    sed -E "/^RkUInfo_built_for|TarvoConfigException::operator=/d
        s/^const (.*)::\`vftable'/vtable for \1\ntypeinfo for \1/
        s/.*__cdecl |^protected: static class [^ ]+ //
        s/\(void\)/()/
        s/(class|enum) //g
        s/ \*const/*/g
        s/ ([*&])/\1/g" "$here/exports.txt"
}

exported_names() {
    case $1 in
    *.dll)
        "$2" -p "$1" | awk '
            # binutils and LLVM print different headings.
            /Ordinal\/Name Pointer] Table|Ordinal +RVA +Name/ { in_names = 1; next }
            NF == 0 { in_names = 0 }
            in_names { print $NF }'
        ;;
    *) "$2" -D --defined-only "$1" | awk '{ print $NF }' ;;
    esac
}

# Compares two lists, ignoring their order.
same() {
    diff <(sort -u "$1") <(sort -u "$2")
}

case $mode in
exports)
    names=$(exported_names "$@")
    if [[ $names == *'?velaConfig@'* ]]; then
        same "$here/exports.txt" <(llvm-undname-19 <<<"$names" 2>/dev/null | grep -v -e '^?' -e '^$')
    else
        same <(in_gnu_terms) <(c++filt <<<"$names")
    fi
    ;;
refused)
    refuses RkUInfo.h -fno-exceptions -- 'RkUInfo throws exceptions' "$@"
    refuses RkUInfo.hpp -- 'RkUInfo.hpp needs C++20' "$@"
    if [[ $* == *-msvc* ]]; then
        refuses RkUInfo.h -Xclang -fno-wchar -- 'compile without /Zc:wchar_t-' "$@"
        refuses RkUInfo.h -fms-runtime-lib=static -- 'RkUInfo needs the shared C runtime' "$@"
        refuses RkUInfo.h -DRKUINFO_NOT_IN_PACKAGE -- 'has no libraries for this configuration' "$@"
    fi
    ;;
figures) diff <(block text) <(dumps "$@" | awk -f "$here/figures.awk") ;;
client)
    printf '#include <RkUInfo.h>\nVelaVariant value;\n' |
        compile - "$@" "${strict[@]}"
    client | compile - "$@" "${strict[@]}" -fno-access-control -Wno-invalid-offsetof
    echo "$(client | grep -c static_assert) assertions hold"
    ;;
esac

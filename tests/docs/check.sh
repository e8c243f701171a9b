#!/usr/bin/env bash
# Holds the documents against what they describe.
#   check.sh links DOCUMENT...            every relative link leads to a file, and ./dev knows what is asked of it
#   check.sh run DOCUMENT BUILD TARGET    what a document shows is run, in a home of its own, and compared
#
# What is run, for the target host:
#   ```console            commands behind "$ ", continued behind "> ", and their output; a line "..." is any lines, and
#                         where there is no other the command has to succeed
#   <!-- file: PATH -->   stands before a block that is written to that file of the home
#   <!-- body -->         stands before a block that may stand in a function: all of them are compiled and run
#   <!-- program -->      stands before a whole program: it is compiled and run
# and for the target windows, beside the files:
#   <!-- windows -->      stands before a ```console block
# Paths are shown as those of /home/me, which has the length of the real home: lines break alike.
set -u
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

check_links() {
    local document link command commands broken=0
    commands=$("$root/dev" help)
    for document in "$@"; do
        while read -r link; do
            if [ ! -e "$root/$(dirname "$document")/$link" ]; then
                echo "$document: nothing at $link" >&2
                broken=1
            fi
        done < <(grep -oE '\]\([^)#: ]+[)#]' "$root/$document" | sed -E 's/^..//; s/.$//')
        while read -r command; do
            if ! grep -q "^$command\\b" <<<"$commands"; then
                echo "$document: there is no $command" >&2
                broken=1
            fi
        done < <(grep -oE '\./dev [a-z]+' "$root/$document" | sort -u)
    done
    return $broken
}

# A clone and a build take minutes, so a clone is links to this tree, and what is built is the build under test.
git() {
    local entry
    [ "$1" = clone ] || return 1
    mkdir -p "$3/build"
    for entry in "$root"/*; do
        [ "$entry" = "$root/build" ] || ln -s "$entry" "$3/"
    done
    ln -s "$build" "$3/build/$target"
    [ "$target" = host ] || ln -s "$root/build/wine" "$3/build/wine"
}

# ./dev package makes an archive; what it holds is installed from the build under test: tar -xzf ARCHIVE -C FOLDER.
tar() {
    [ "$1" = -xzf ] || return 1
    command cmake --install "$build" --prefix "$4/$(basename "$2" .tar.gz)" >/dev/null
}

cmake() {
    case $* in
    "--preset "* | "--build --preset "*) ;;
    *) command cmake "$@" ;;
    esac
}

# Nothing of a document's run stays, in Wine's registry neither.
clean_up() {
    local key
    rm -rf "$home"
    [ "$target" = windows ] || return 0
    for key in 'HKCU\Software\Norvik' 'HKCU\Software\Acme' \
        'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\{5C3D71E0-B00F-1033-C10E-9E40B6D2F815}'; do
        "$root/toolchains/run-wine.sh" reg delete "$key" /f
    done
}

# Puts each block in a file NUMBER, and what it is and its line in NUMBER.kind.
split_blocks() {
    awk -v folder="$2" '
        /^```/ && file == "" {
            file = sprintf("%s/%03d", folder, ++count)
            print mark == "" ? substr($0, 4) : mark, "\n" FNR + 1 >(file ".kind")
            printf "" >file
            next
        }
        /^```$/ { close(file); file = mark = ""; next }
        file != "" { print >file; next }
        /^<!-- .* -->$/ { mark = substr($0, 6, length - 9); next }
        NF { mark = "" }' "$1"
}

# Runs $command, shown as it is in the document, and holds its output against $expected.
check_step() {
    local actual pattern
    [ -n "$command" ] || return 0
    (exit "$status")
    eval "$command" >"$home/.output" 2>&1 </dev/null
    status=$?
    actual=$(sed -e "s,$home,/home/me,g" -e "s,Z:\\\\tmp\\\\${home##*/},Z:\\\\home\\\\me,g" -e 's/\r$//' "$home/.output")
    pattern=$(sed -e 's/[][\\*?]/\\&/g' -e 's/^\.\.\.$/*/' <<<"$expected")
    # shellcheck disable=SC2053 # a pattern
    [[ $actual == ${pattern%%*($'\n')} && ($expected != $'...\n' || $status = 0) ]] && return
    diff -u --label "$document" --label actual <(printf '%s' "$expected") <(printf '%s\n' "$actual") >&2
    fail "$document: not what it shows: $command"
}

run_transcript() {
    local line command='' expected=''
    while IFS= read -r line <&3; do
        case $line in
        '$ '*)
            check_step
            command=${line#??} expected=''
            ;;
        '> '*) command+=$'\n'${line#??} ;;
        *) expected+=$line$'\n' ;;
        esac
    done 3<"$1"
    check_step
}

# Compiles a program and runs it in an application's folder, with English.
run_program() {
    local app=$home/$2
    mkdir -p "$app"
    cp -r "$build/bin/en-US" "$app"
    printf '[Product]\r\nCompanyName=Acme\r\n' >"$app/TARVO.ini"
    g++ -std=c++20 -fshort-wchar -Wall -Wextra -Werror -I"$root/include" -I"$root/rkosbase/include" "$1" \
        -L"$build/bin" -lRkUInfo -lRkOsBase -Wl,-rpath,"$build/bin" -o "$app/program" || fail "$document: not compiled"
    "$app/program" || fail "$document: a program failed"
}

run_document() {
    local document=$1 block kind line
    build=$2 target=$3 status=0
    shopt -s extglob
    home=$(mktemp -d /tmp/XXX)
    trap clean_up EXIT
    unset XDG_DATA_HOME XDG_CONFIG_HOME XDG_DOCUMENTS_DIR
    export HOME=$home LC_ALL=C.UTF-8
    export -f cmake
    mkdir "$home/.blocks"
    cd "$home" || exit
    split_blocks "$root/$document" "$home/.blocks"
    if [ "$target" = windows ] || ! grep -q '^\$ git clone' "$root/$document"; then
        git clone URL rkuinfo && cd rkuinfo || exit
    fi
    printf '#include <RkUInfo.hpp>\n#include <cassert>\n#include <iostream>\n' >"$home/.bodies.cpp"
    for block in "$home"/.blocks/???; do
        { read -r kind && read -r line; } <"$block.kind"
        case $target:$kind in
        *:file:*)
            mkdir -p "$(dirname "$home/${kind#file: }")"
            cp "$block" "$home/${kind#file: }"
            ;;
        host:console | windows:windows) run_transcript "$block" ;;
        host:program) cp "$block" "$block.cpp" && run_program "$block.cpp" "program$line" ;;
        host:body)
            printf 'static void body%s()\n{\n#line %s "%s"\n' "$line" "$line" "$document" >>"$home/.bodies.cpp"
            cat "$block" - <<<'}' >>"$home/.bodies.cpp"
            ;;
        esac
    done
    grep -q body "$home/.bodies.cpp" || return 0
    {
        printf 'int main()\n{\nInitVelaConfig(nullptr, nullptr, L"en-US", nullptr);\nCreateConfigReg();\n'
        sed -n 's/^static void \(body.*\)/\1;/p' "$home/.bodies.cpp"
        echo '}'
    } >"$home/.main"
    cat "$home/.main" >>"$home/.bodies.cpp"
    run_program "$home/.bodies.cpp" bodies
}

mode=$1
shift
case $mode in
links) check_links "$@" ;;
run) run_document "$@" ;;
esac

#!/usr/bin/env bash
# Compares the documents with what they describe.
#   check.sh links DOCUMENT...           Checks that the targets of relative links, the paths in backticks and the ./dev
#                                        commands exist.
#   check.sh run DOCUMENT TARGET PLACE   Runs the examples of a document in a temporary home, and compares their output
#                                        with the output shown.
#
# These blocks are run on Linux:
#   ```console            A command is on a line that starts with "$ ", and continues on lines that start with "> ".
#                         The other lines are the expected output, in which a line "..." matches any number of
#                         lines. If "..." is the only line of the expected output, the command must exit with 0.
#   <!-- file: PATH -->   The next block is written to the file PATH in the home.
#   <!-- body -->         The next block is the body of a function. One program that calls all these functions is
#                         compiled and run.
#   <!-- program -->      The next block is a program, which is compiled and run.
# If TARGET is "host", PLACE is a build tree; its package/ folder is packed into an archive in the home folder.
# If TARGET is "fresh", then PLACE is the archive, and the machine has only the packages that the document
# installs. If TARGET is "windows", PLACE is a build tree. Only the blocks marked <!-- file --> or
# <!-- windows --> are used. Documents show the temporary home as /home/me: both paths have the same length,
# so lines break at the same places.
set -u
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# exists DOCUMENT PATH: the path may be relative to src/, tests/ or winhost/, and may omit the file's
# extension.
exists() {
    local folder
    for folder in "" src/ tests/ winhost/src/ winhost/include/ "$(dirname "$1")/"; do
        [ ! -e "$root/$folder$2" ] && ! compgen -G "$root/$folder$2.*" >/dev/null || return 0
    done
    [[ $2 =~ ^(build|lib|share)/ ]] # assume that a path in a build or a package exists
}

check_links() {
    local document name commands broken=0
    commands=$("$root/dev" help)
    for document in "$@"; do
        while read -r name; do
            [ -e "$root/$(dirname "$document")/$name" ] || { broken=1 && echo "$document: nothing at $name" >&2; }
        done < <(grep -oE '\]\([^)#: ]+[)#]' "$root/$document" | sed -E 's/^..//; s/.$//')
        while read -r name; do
            exists "$document" "$name" || { broken=1 && echo "$document: there is no $name" >&2; }
        done < <(grep -oE '`[A-Za-z_.]+(/[A-Za-z0-9_.-]+)+/?`' "$root/$document" | grep -v '^`./dev' | tr -d '`')
        while read -r name; do
            grep -q "^$name\\b" <<<"$commands" || { broken=1 && echo "$document: there is no $name" >&2; }
        done < <(grep -oE '\./dev [a-z]+' "$root/$document" | sort -u)
    done
    return $broken
}

# Cloning and building would take minutes, so ~/rkuinfo consists of links to this tree and to the build under
# test.
make_clone() {
    local entry
    mkdir -p rkuinfo/build
    for entry in "$root"/*; do
        [ "$entry" = "$root/build" ] || ln -s "$entry" rkuinfo/
    done
    ln -s "$place" "rkuinfo/build/$target"
    [ "$target" = host ] || ln -s "$root/build/wine" rkuinfo/build/wine
}

# The commands in the documents use sudo to install packages. Unless TARGET is "fresh", the packages are
# already installed.
sudo() {
    [ "$target" != fresh ] || "$@"
}

cmake() {
    case $* in
    "--preset "* | "--build --preset "*) ;;
    *) command cmake "$@" ;;
    esac
}

# Removes everything that a document's commands stored, including keys in Wine's registry.
clean_up() {
    local key
    rm -rf "$home"
    [ "$target" = windows ] || return 0
    for key in 'HKCU\Software\Norvik' 'HKCU\Software\Acme' \
        'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\{5C3D71E0-B00F-1033-C10E-9E40B6D2F815}'; do
        "$root/toolchains/run-wine.sh" reg delete "$key" /f
    done
}

# Writes each block to a file named NUMBER, and the block's kind and line number to NUMBER.kind.
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

# Runs $command and compares its output with $expected.
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

# Compiles a program with the package's library, and runs it in a folder that contains the English resources.
run_program() {
    local app=$home/$2
    mkdir -p "$app"
    cp -r "$package/lib/rkuinfo/en-US" "$app"
    printf '[Product]\r\nCompanyName=Acme\r\n' >"$app/TARVO.ini"
    g++ -std=c++20 -fshort-wchar -Wall -Wextra -Werror -I"$package/include" "$1" \
        -L"$package/lib" -lRkUInfo -lRkOsBase -Wl,-rpath,"$package/lib" -o "$app/program" || fail "$document: not compiled"
    "$app/program" || fail "$document: a program failed"
}

run_document() {
    local document=$1 block kind line name=rkuinfo-2018.2-linux package
    target=$2 place=$3 status=0
    shopt -s extglob
    home=$(mktemp -d /tmp/XXX)
    trap clean_up EXIT
    unset XDG_DATA_HOME XDG_CONFIG_HOME XDG_DOCUMENTS_DIR
    export HOME=$home LC_ALL=C.UTF-8
    export -f cmake
    mkdir "$home/.blocks"
    cd "$home" || exit
    [ "$target" = fresh ] || make_clone
    case $target in
    host) tar -czf $name.tar.gz -C "$place" --transform "s,^package,$name," package || exit ;;
    fresh) cp "$place" $name.tar.gz ;;
    esac
    if [ "$target" != windows ]; then
        package=$home/.package/$name
        mkdir .package && tar -xzf $name.tar.gz -C .package || exit
    fi
    split_blocks "$root/$document" "$home/.blocks"
    printf '#include <RkUInfo.hpp>\n#include <cassert>\n#include <iostream>\n' >"$home/.bodies.cpp"
    for block in "$home"/.blocks/???; do
        { read -r kind && read -r line; } <"$block.kind"
        case $target:$kind in
        *:file:*)
            mkdir -p "$(dirname "$home/${kind#file: }")"
            cp "$block" "$home/${kind#file: }"
            ;;
        host:console | fresh:console | windows:windows) run_transcript "$block" ;;
        host:program | fresh:program) cp "$block" "$block.cpp" && run_program "$block.cpp" "program$line" ;;
        host:body | fresh:body)
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

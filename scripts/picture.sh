#!/usr/bin/env bash
# scripts/picture.sh [COLUMNS] >docs/rkuinfo.svg
#
# Prints the picture in the README: rkuinfo's output for the application that ./dev demo creates. Colours
# follow the reader's dark or light scheme.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
columns=${1:-80}
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
cp -r build/demo/host/app "$home/cad"
cp build/host/bin/rkuinfo "$home/cad"
export HOME=$home XDG_DATA_HOME=$home/.local/share XDG_CONFIG_HOME=$home/.config
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"
cd "$home/cad"
rm -r zh-CN # Chinese text misaligns the columns in viewers without a Chinese font
./installer en-US fr-FR

run() {
    printf '\e[1m$ rkuinfo %s\e[0m\n' "$*"
    ./rkuinfo --columns "$columns" --color always "$@" || true
    echo
}

{
    run languages
    run doctor
    run --language en-US provision
    run set settings Display/Colors/Background int 0x204060
    run set settings Display/Title string Zeichnung
    run --language en-US list settings --recursive
} | sed -e "s,Z:[^ ]*${home##*/},Z:\\\\home\\\\me,g" | awk -v columns="$columns" '
    BEGIN {
        style[1] = "h"; style[31] = "r"; style[32] = "g"; style[36] = "c"; style[90] = "q"
    }
    { lines[++count] = $0 }
    function escaped(text) {
        gsub(/&/, "\\&amp;", text); gsub(/</, "\\&lt;", text); gsub(/>/, "\\&gt;", text)
        return text
    }
    END {
        while (count > 0 && lines[count] == "") --count
        width = columns * 8.43 + 32; height = count * 18 + 32
        printf "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"0 0 %d %d\">\n", width, height, width, height
        print "<style>"
        print "text { font: 14px \"DejaVu Sans Mono\", Menlo, Consolas, monospace; white-space: pre; fill: #24292f }"
        print "rect { fill: #f6f8fa } .h { font-weight: bold } .r { fill: #cf222e } .g { fill: #1a7f37 }"
        print ".c { fill: #0550ae } .q { fill: #6e7781 }"
        print "@media (prefers-color-scheme: dark) {"
        print "text { fill: #e6edf3 } rect { fill: #161b22 } .r { fill: #ff7b72 } .g { fill: #56d364 }"
        print ".c { fill: #79c0ff } .q { fill: #8b949e } }"
        print "</style>"
        print "<rect width=\"100%\" height=\"100%\" rx=\"8\"/>"
        for (i = 1; i <= count; ++i) {
            rest = lines[i]
            out = ""
            while (match(rest, /\033\[[0-9]+m/)) {
                out = out escaped(substr(rest, 1, RSTART - 1))
                code = substr(rest, RSTART + 2, RLENGTH - 3)
                rest = substr(rest, RSTART + RLENGTH)
                out = out (code == "0" ? "</tspan>" : "<tspan class=\"" style[code] "\">")
            }
            printf "<text x=\"16\" y=\"%d\" xml:space=\"preserve\">%s</text>\n", 30 + (i - 1) * 18, out escaped(rest)
        }
        print "</svg>"
    }'

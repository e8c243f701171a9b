# Lays out an application, starts it as a user would and shows what the library reports.

installed=(en-US de-DE fr-FR zh-CN)

lay_out() {
    local bin=build/$target/bin language
    rm -rf "$demo"
    mkdir -p "$app" "$demo/home"
    cp "$bin/launcher$suffix" "$app/cad$suffix"
    cp "$bin/installer$suffix" "$bin/rkuinfo$suffix" "$app/"
    if [ "$target" = windows ]; then
        cp "$bin/answer.exe" "$bin"/*.dll "$app/"
    fi
    for language in "${installed[@]}" es-ES; do
        cp -r "$bin/$language" "$app/"
    done
    {
        printf '[Product]\r\nLocaleId=1031\r\n[LocaleIdLangName]\r\n'
        printf '1031=de-DE\r\n1033=en-US\r\n1036=fr-FR\r\n2052=zh-CN\r\n'
        printf '[PartnerOEM]\r\nMergeTitle=1\r\n'
    } >"$app/TARVO.ini"
    printf '[Product]\r\nMajorVer=2\r\nProductId=5\r\n' >"$app/product.ini"
}

# Runs a program in the application's folder.
start() {
    local program=$app/$1$suffix
    shift
    if [ "$target" = windows ]; then
        toolchains/run-wine.sh "$program" "$@"
    else
        "$program" "$@"
    fi
}

show() {
    printf '\n==== %s\n    ' "$1"
    shift
    printf ' %s' "$@"
    printf '\n'
    start "$@" | shorten
}

# Prints the first ten lines of its input; with --full, prints all lines.
shorten() {
    [ -z "$full" ] || exec cat
    awk 'NR <= 10 { print } END { if (NR > 10) print "... and " NR - 10 " more lines: ./dev demo --full" }'
}

answer_yes() {
    if [ "$target" = windows ]; then
        start answer TARVO &
        start cad "$@"
        wait $!
    else
        printf 'yes\n' | start cad "$@"
    fi
}

run_demo() {
    local argument
    target=host suffix='' full=''
    for argument in "$@"; do
        case $argument in
        --full) full=1 ;;
        *) target=$argument ;;
        esac
    done
    local programs=(launcher installer rkuinfo langpacks)
    case $target in
    host) ;;
    windows)
        suffix=.exe
        programs+=(answer)
        ;;
    *)
        usage >&2
        return 2
        ;;
    esac
    demo=$PWD/build/demo/$target
    app=$demo/app
    echo "Building in build/$target: minutes the first time, seconds later."
    build "$target" "${programs[@]}" >"build/demo-build.log" || {
        cat build/demo-build.log >&2
        return 1
    }
    lay_out
    export HOME=$demo/home XDG_DATA_HOME=$demo/home/.local/share XDG_CONFIG_HOME=$demo/home/.config
    export XDG_DOCUMENTS_DIR=$demo/home/Documents
    mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"
    if [ "$target" = windows ]; then
        wine_folder=$demo/wine
        start_wine
    fi
    echo "An application in $app: languages ${installed[*]}; es-ES has a folder but was never installed."
    start installer "${installed[@]}"

    show "A new user: the language comes from TARVO.ini, and the tree is created" cad
    show "The tree" rkuinfo list product-root --recursive
    show "Another language and profile, from the command line" cad --language fr-FR --profile Work
    show "Started without arguments: language and profile come from the registry" cad
    printf '\n==== A language that is not installed: the user is asked, and says yes\n     cad --language ja-JP\n'
    answer_yes --language ja-JP

    printf '\n==== One process each writes a setting of every type, then others read them\n'
    start rkuinfo set settings Display/Colors/Background int 2113600
    start rkuinfo set settings Display/Frames int64 -9007199254740993
    start rkuinfo set settings Display/Scale double 1.25
    start rkuinfo set settings Display/Layout binary 00ff10a0
    start rkuinfo set settings Display/Title string 'Zeichnung – 图纸'
    show "One of them" rkuinfo get settings Display/Title
    show "All of a key" rkuinfo list settings Display
    show "Its sub-key" rkuinfo list settings Display/Colors
}

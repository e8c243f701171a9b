# bash completion of rkuinfo

_rkuinfo() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local commands='show get set list tree search rm export import diff profiles use provision languages doctor help'
    local languages='cs-CZ de-DE en-US es-ES fr-FR hu-HU it-IT ja-JP ko-KR pl-PL pt-BR ru-RU tr-TR zh-CN zh-TW'
    local subtrees='product-root version-root language-root profiles-root current-profile applications
        recent-file-list settings user-config'
    local IFS=$' \t\n'
    COMPREPLY=()

    case $before in
    --language) COMPREPLY=($(compgen -W "$languages" -- "$word")) && return ;;
    --file) COMPREPLY=($(compgen -f -- "$word")) && return ;;
    --program) COMPREPLY=($(compgen -d -- "$word")) && return ;;
    --color) COMPREPLY=($(compgen -W 'always never auto' -- "$word")) && return ;;
    --format) COMPREPLY=($(compgen -W 'json reg' -- "$word")) && return ;;
    --as) COMPREPLY=($(compgen -W 'double hex' -- "$word")) && return ;;
    --company | --product | --profile | --columns | --value | --default) return ;;
    esac

    # The command, its words before this one, and the options that say whom to be.
    local command='' words=() identity=() i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        --company | --product | --language | --profile | --program)
            identity+=("${COMP_WORDS[i]}" "${COMP_WORDS[i + 1]}")
            ((++i))
            ;;
        --columns | --color | --file | --format | --value | --as | --default) ((++i)) ;;
        -*) ;;
        *) if [ -z "$command" ]; then command=${COMP_WORDS[i]}; else words+=("${COMP_WORDS[i]}"); fi ;;
        esac
    done

    if [[ $word == -* ]]; then
        local options='--program --company --product --language --profile --columns --color --help --version'
        case $command in
        show | list | languages | doctor) options+=' --json' ;;
        get) options+=' --as --default --json' ;;
        set | diff) options+=' --file' ;;
        rm) options+=' --value --all' ;;
        export) options+=' --file --format' ;;
        import) options+=' --file --dry-run' ;;
        esac
        COMPREPLY=($(compgen -W "$options" -- "$word"))
        return
    fi
    case $command:${#words[@]} in
    :*) COMPREPLY=($(compgen -W "$commands" -- "$word")) ;;
    help:0) COMPREPLY=($(compgen -W "$commands" -- "$word")) ;;
    show:* | use:* | provision:* | languages:* | doctor:* | help:*) ;;
    profiles:0) COMPREPLY=($(compgen -W 'list current create select copy delete' -- "$word")) ;;
    profiles:1) IFS=$'\n' && COMPREPLY=($(compgen -W "$("${COMP_WORDS[0]}" "${identity[@]}" profiles 2>/dev/null |
        cut -f 2)" -- "$word")) ;;
    *:0) COMPREPLY=($(compgen -W "$subtrees" -- "$word")) ;;
    set:2) COMPREPLY=($(compgen -W 'int int64 double binary string' -- "$word")) ;;
    search:1) ;;
    *:1 | search:2) _rkuinfo_keys ;;
    esac
}

# What is right below the key before the last separator: keys, and values where a command takes one.
_rkuinfo_keys() {
    local key='' line kind
    [[ $word != */* ]] || key=${word%/*}
    while IFS=$'\t' read -r line kind _; do
        case $command:$kind in
        *:key) line=${line%\\}/ ;;
        get:* | set:*) ;;
        *) continue ;;
        esac
        line=${key:+$key/}$line
        [[ $line != "$word"* ]] || COMPREPLY+=("$(printf %q "$line")")
    done < <("${COMP_WORDS[0]}" "${identity[@]}" list "${words[0]}" "$key" 2>/dev/null)
    compopt -o nospace 2>/dev/null
}
complete -F _rkuinfo rkuinfo rkuinfo.exe

# bash completion of rkuinfo

_rkuinfo() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local commands='show get set list tree rm export import provision languages doctor'
    local names='--company --product --language --profile'
    local languages='cs-CZ de-DE en-US es-ES fr-FR hu-HU it-IT ja-JP ko-KR pl-PL pt-BR ru-RU tr-TR zh-CN zh-TW'
    local subtrees='product-root version-root language-root profiles-root current-profile applications
        recent-file-list settings user-config'
    local types='int int64 double binary string'
    COMPREPLY=()

    case $before in
    --language) COMPREPLY=($(compgen -W "$languages" -- "$word")) && return ;;
    --file) COMPREPLY=($(compgen -f -- "$word")) && return ;;
    --company | --product | --profile | --columns | --value) return ;;
    esac

    # The command, and which of its words this is.
    local command='' position=0 i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        --company | --product | --language | --profile | --columns | --file | --value) ((++i)) ;;
        -*) ;;
        *) if [ -z "$command" ]; then command=${COMP_WORDS[i]}; else ((++position)); fi ;;
        esac
    done

    if [[ $word == -* ]]; then
        local options="$names --columns --help"
        case $command in
        '') options+=' --version' ;;
        show | get | list | languages | doctor) options+=' --json' ;;
        rm) options+=' --value --all' ;;
        export | import) options+=' --file' ;;
        esac
        COMPREPLY=($(compgen -W "$options" -- "$word"))
        return
    fi
    case $command:$position in
    :*) COMPREPLY=($(compgen -W "$commands" -- "$word")) ;;
    show:* | provision:* | languages:* | doctor:*) ;;
    *:0) COMPREPLY=($(compgen -W "$subtrees" -- "$word")) ;;
    set:2) COMPREPLY=($(compgen -W "$types" -- "$word")) ;;
    esac
}
complete -F _rkuinfo rkuinfo rkuinfo.exe

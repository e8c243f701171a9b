# bash completion of rkuinfo, which itself knows what may follow
_rkuinfo() {
    local word
    COMPREPLY=()
    while IFS= read -r word; do
        COMPREPLY+=("$(printf %q "$word")")
    done < <("${COMP_WORDS[0]}" complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
    [[ ${COMPREPLY[0]-} != */ ]] || compopt -o nospace 2>/dev/null
}
complete -o default -F _rkuinfo rkuinfo rkuinfo.exe

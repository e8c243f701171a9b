# bash completion of rkuinfo: the program prints the words
_rkuinfo() {
    mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
}
complete -o default -F _rkuinfo rkuinfo rkuinfo.exe

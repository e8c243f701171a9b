# Checks that docs/ARCHITECTURE.md allows every dependency between the folders of src/. A dependency is an include, or a
# symbol that one object file uses and another defines.

# Prints "from -> to" for each include and each undefined symbol. Omits weak symbols, which come from inline code.
found_arrows() {
    local objects=$1
    (cd src && grep -HoE '#include "[a-z]+/' -r . | sed -E 's|^\./([a-z]+)/[^:]*:#include "([a-z]+)/|\1 -> \2|')
    for source in src/*/*.cpp; do
        nm "$objects"/*.dir/"${source#src/}".o | sed "s|^|$(basename "$(dirname "$source")") |" || exit
    done | awk '
        NF == 4 && $3 ~ /[TBDR]/ { home[$4] = $1 }
        NF == 3 && $2 == "U" { needs[$1 " " $3] }
        END {
            for (need in needs) {
                split(need, word, " ")
                if (word[2] in home)
                    print word[1] " -> " home[word[2]]
            }
        }'
}

check_arrows() {
    local allowed found forbidden
    build host RkUInfo >build/arrows.log || {
        cat build/arrows.log >&2
        return 1
    }
    allowed=$(sed -n 's/^\([a-z]*\) -> \([a-z ]*\)$/\1 \2/p' docs/ARCHITECTURE.md |
        while read -r from to; do printf "$from -> %s\n" $to; done)
    found=$(found_arrows build/host/src/CMakeFiles) || return
    forbidden=$(sed -E '/^([a-z]+) -> \1$/d' <<<"$found" | sort -u | grep -vxF "$allowed") || return 0
    echo "src/ has dependencies that docs/ARCHITECTURE.md does not allow:" >&2
    echo "$forbidden" >&2
    return 1
}

# Converts clang's dumps of record layouts and virtual tables to the table of docs/ABI.md. A virtual destructor counts
# as one slot, as in Visual C++'s ABI; the GNU ABI has two.
BEGIN {
    count = split("TarvoConfig TarvoConfig::ItemIterator TarvoConfig::ValueIterator TarvoLanguage VelaVariant " \
                  "ITarvoProduct TarvoConfigException RkException RkExceptionWithMsg RkErrorStatus RkLocker " \
                  "VelaCrashRecorder", classes, " ")
}
/^\*\*\* Dumping AST Record Layout/ { name = ""; heading = 1; slots = 0; next }
/^V(T|FT)able indices for '/ {
    name = $0
    gsub(/^[^']*'|'.*$/, "", name)
    slots = 1
    shift = 0
    next
}
/^$/ || /^V/ { name = "" ; slots = 0; next }
heading { name = $NF; heading = 0; next }
name == "" { next }
slots && /\[complete\]/ { shift = 1; next }
slots {
    slot = $1 - ($1 > 0 ? shift : 0)
    sub(/^ *[0-9]+ \| /, "")
    sub(/ \[.*deleting\]$/, "")
    text[name] = text[name] sprintf("  slot %2d  %s\n", slot, $0)
    next
}
/\[sizeof=/ {
    match($0, /sizeof=[0-9]+/)
    size = substr($0, RSTART + 7, RLENGTH - 7)
    match($0, / align=[0-9]+/)
    title[name] = sprintf("%s: size %d, alignment %d\n", name, size, substr($0, RSTART + 7, RLENGTH - 7))
    name = ""
    next
}
/^ *[0-9]+ \|   [^ ]/ {
    offset = $1
    sub(/^ *[0-9]+ \|   /, "")
    sub(/vftable pointer/, "vtable pointer")
    sub(/^(struct|enum) (VelaVariant::)?/, "") # clang 19 and later omits it
    text[name] = text[name] sprintf("  %7d  %s\n", offset, $0)
}
END {
    for (i = 1; i <= count; ++i) {
        printf "%s%s", title[classes[i]], text[classes[i]]
    }
}

// Uses an ELF module's relocations to find its import slots.
#include "support/imports.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <set>

namespace testing_support {

const char* const libraryModule = "libRkUInfo.so";

std::vector<void**> importSlots(const char* module, const char* function)
{
    constexpr std::uintptr_t page = 4096;
    static std::set<void**> bound;
    std::vector<void**> slots;
    link_map* loaded = _r_debug.r_map; // dlopen would need a library's versioned file name
    while (module != nullptr && std::strstr(loaded->l_name, module) == nullptr) {
        loaded = loaded->l_next;
    }
    std::map<Elf64_Sxword, std::uintptr_t> entries;
    for (const ElfW(Dyn)* at = loaded->l_ld; at->d_tag != DT_NULL; ++at) {
        entries[at->d_tag] = at->d_un.d_val;
    }
    const auto* const symbols = reinterpret_cast<const Elf64_Sym*>(entries[DT_SYMTAB]);
    const auto* const names = reinterpret_cast<const char*>(entries[DT_STRTAB]);
    for (const auto& [table, size] : {std::pair{DT_JMPREL, DT_PLTRELSZ}, std::pair{DT_RELA, DT_RELASZ}}) {
        const auto* const first = reinterpret_cast<const Elf64_Rela*>(entries[table]);
        const std::uintptr_t unnamed =
            table == DT_RELA ? entries[DT_RELACOUNT] : 0; // the first relocations have no symbol
        for (const Elf64_Rela* at = first + unnamed; at < first + entries[size] / sizeof *at; ++at) {
            const auto type = ELF64_R_TYPE(at->r_info);
            const char* const symbol = names + symbols[ELF64_R_SYM(at->r_info)].st_name;
            if ((type == R_X86_64_JUMP_SLOT || type == R_X86_64_GLOB_DAT) && isNameOf(symbol, function)) {
                const std::uintptr_t address = loaded->l_addr + at->r_offset;
                mprotect(reinterpret_cast<void*>(address & ~(page - 1)), page, PROT_READ | PROT_WRITE);
                slots.push_back(reinterpret_cast<void**>(address));
                // Until a slot is bound, it may point to the lazy binder, which would overwrite a patch.
                if (bound.insert(slots.back()).second) {
                    *slots.back() = dlsym(RTLD_DEFAULT, symbol);
                }
            }
        }
    }
    return slots;
}

} // namespace testing_support

// Imports of an ELF module: the slots that its relocations name.
#include "support/imports.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string>

namespace testing_support {

const char* const libraryModule = "libRkUInfo.so";
const char* const programModule = nullptr;

namespace {

void makeWritable(void* address)
{
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    void* const start = reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(address) & ~(page - 1));
    mprotect(start, page, PROT_READ | PROT_WRITE);
}

class Module
{
public:
    explicit Module(const char* name)
    {
        void* const handle = dlopen(name, RTLD_LAZY | RTLD_NOLOAD);
        if (handle == nullptr || dlinfo(handle, RTLD_DI_LINKMAP, &m_map) != 0) {
            throw std::runtime_error("no such module");
        }
        dlclose(handle);
    }

    std::vector<void**> slotsOf(const char* function) const
    {
        std::vector<void**> slots;
        collect(DT_JMPREL, DT_PLTRELSZ, function, slots);
        collect(DT_RELA, DT_RELASZ, function, slots);
        return slots;
    }

private:
    std::uintptr_t entry(Elf64_Sxword tag) const
    {
        for (const ElfW(Dyn)* at = m_map->l_ld; at->d_tag != DT_NULL; ++at) {
            if (at->d_tag == tag) {
                return at->d_un.d_val;
            }
        }
        return 0;
    }

    void collect(Elf64_Sxword table, Elf64_Sxword size, const char* function,
                 std::vector<void**>& slots) const
    {
        const auto* const relocations = reinterpret_cast<const Elf64_Rela*>(entry(table));
        const auto* const symbols = reinterpret_cast<const Elf64_Sym*>(entry(DT_SYMTAB));
        const auto* const names = reinterpret_cast<const char*>(entry(DT_STRTAB));
        for (std::size_t i = 0; relocations != nullptr && i < entry(size) / sizeof(Elf64_Rela); ++i) {
            const auto type = ELF64_R_TYPE(relocations[i].r_info);
            const Elf64_Sym& symbol = symbols[ELF64_R_SYM(relocations[i].r_info)];
            if ((type == R_X86_64_JUMP_SLOT || type == R_X86_64_GLOB_DAT) &&
                std::strcmp(names + symbol.st_name, function) == 0) {
                slots.push_back(reinterpret_cast<void**>(m_map->l_addr + relocations[i].r_offset));
            }
        }
    }

    link_map* m_map = nullptr;
};

} // namespace

ImportPatch::ImportPatch(const char* module, const char* function, void* replacement)
{
    static std::set<void**> bound;
    for (void** const slot : Module(module).slotsOf(function)) {
        makeWritable(slot);
        if (bound.insert(slot).second) {
            *slot = dlsym(RTLD_DEFAULT,
                          function); // it may still hold the lazy binder, which would undo the patch
        }
        m_original = *slot;
        m_slots.push_back({slot, *slot});
        *slot = replacement;
    }
    if (m_slots.empty()) {
        throw std::runtime_error(std::string("not imported: ") + function);
    }
}

ImportPatch::~ImportPatch()
{
    for (const Slot& slot : m_slots) {
        *slot.address = slot.before;
    }
}

} // namespace testing_support

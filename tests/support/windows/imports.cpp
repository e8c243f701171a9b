// Imports of a PE module: its import address table.
#include "support/imports.h"

#include <windows.h>

#include <cstring>
#include <stdexcept>
#include <string>

namespace testing_support {

const char* const libraryModule = "RkUInfo.dll";
const char* const programModule = nullptr;

namespace {

template <typename T>
T* at(HMODULE module, DWORD offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<char*>(module) + offset);
}

std::vector<void**> slotsOf(HMODULE module, const char* function)
{
    std::vector<void**> slots;
    const auto* const headers =
        at<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (const auto* from = at<IMAGE_IMPORT_DESCRIPTOR>(module, imports); from->Name != 0; ++from) {
        const auto* name = at<IMAGE_THUNK_DATA>(module, from->OriginalFirstThunk);
        auto* slot = at<void*>(module, from->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            const auto* const imported =
                at<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(name->u1.AddressOfData));
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) &&
                std::strcmp(reinterpret_cast<const char*>(imported->Name), function) == 0) {
                slots.push_back(slot);
            }
        }
    }
    return slots;
}

} // namespace

ImportPatch::ImportPatch(const char* module, const char* function, void* replacement)
{
    for (void** const slot : slotsOf(GetModuleHandleA(module), function)) {
        DWORD before = 0;
        VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
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

// Finds the import slots of a PE module in its import address table.
#include "support/imports.h"

#include <windows.h>

namespace testing_support {

const char* const libraryModule = "RkUInfo.dll";

namespace {

template <typename T>
T* at(HMODULE module, ULONGLONG offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<char*>(module) + offset);
}

} // namespace

std::vector<void**> importSlots(const char* moduleName, const char* function)
{
    std::vector<void**> slots;
    const HMODULE module = GetModuleHandleA(moduleName);
    const auto header = static_cast<DWORD>(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports =
        at<IMAGE_NT_HEADERS>(module, header)->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* from = at<IMAGE_IMPORT_DESCRIPTOR>(module, imports.VirtualAddress);
    for (; from->Name != 0; ++from) {
        const auto* name = at<IMAGE_THUNK_DATA>(module, from->OriginalFirstThunk);
        auto* slot = at<void*>(module, from->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            const auto* const imported = at<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) &&
                isNameOf(reinterpret_cast<const char*>(imported->Name), function)) {
                DWORD before = 0;
                VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
                slots.push_back(slot);
            }
        }
    }
    return slots;
}

} // namespace testing_support

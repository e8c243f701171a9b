#include "store/key_tree.h"

#include "platform/registry_key.h"
#include "platform/text.h"

#include <RkOsBase.h>

#include <atomic>

namespace {

using uinfo::BoundedText;
using uinfo::RegistryKey;

constexpr std::size_t treePathCapacity = std::size_t{2} * MAX_PATH;
constexpr int firstVersionWithDeleteTree = 8;

using DeleteTree = LSTATUS(WINAPI*)(HKEY, LPCWSTR);

std::atomic<DeleteTree> regDeleteTree = nullptr;

DeleteTree systemDeleteTree()
{
    DeleteTree known = regDeleteTree.load(std::memory_order_relaxed);
    if (known == nullptr) {
        const HMODULE module = GetModuleHandleW(L"Advapi32.dll");
        if (module != nullptr) {
            known = reinterpret_cast<DeleteTree>(
                reinterpret_cast<void*>(GetProcAddress(module, "RegDeleteTreeW")));
        }
        regDeleteTree.store(known, std::memory_order_relaxed);
    }
    return known;
}

/// Removes a key and its sub-keys on systems that are older than Windows 8 or lack RegDeleteTreeW.
int deleteTreeAt(HKEY parent, BoundedText& path)
{
    if (RegDeleteKeyW(parent, path.text()) == ERROR_SUCCESS) {
        return 1;
    }
    HKEY opened = nullptr;
    const LSTATUS status = RegOpenKeyExW(parent, path.text(), 0, KEY_READ, &opened);
    if (status != ERROR_SUCCESS) {
        return status == ERROR_FILE_NOT_FOUND ? 1 : 0;
    }
    RegistryKey key(opened);
    if (path.text()[path.length() - 1] != L'\\' && !path.append(L"\\")) {
        return 0;
    }
    const std::size_t end = path.length();
    for (;;) {
        wchar_t child[MAX_PATH];
        DWORD childLength = MAX_PATH;
        // The index is always 0, because each child is removed before the next is read.
        if (RegEnumKeyExW(key.get(), 0, child, &childLength, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            break;
        }
        path.cut(end);
        if (!path.appendPart(child, childLength) || deleteTreeAt(parent, path) == 0) {
            break;
        }
    }
    key = RegistryKey();
    path.cut(end - 1);
    return RegDeleteKeyW(parent, path.text()) == ERROR_SUCCESS ? 1 : 0;
}

} // namespace

namespace uinfo {

int deleteKeyTree(HKEY parent, const wchar_t* subKey)
{
    TextBuffer<treePathCapacity> path;
    if (isEmpty(subKey) || !path.append(subKey)) {
        return 0;
    }
    return deleteTreeAt(parent, path);
}

bool removeKeyTree(HKEY parent, const wchar_t* subKey)
{
    if (velaGetWindowsVersion(nullptr, nullptr, nullptr) >= firstVersionWithDeleteTree) {
        if (const DeleteTree deleteTree = systemDeleteTree()) {
            return deleteTree(parent, subKey) == ERROR_SUCCESS;
        }
    }
    return deleteKeyTree(parent, subKey) != 0;
}

} // namespace uinfo

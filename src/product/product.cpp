#include "product/product.h"

#include "installation/choices.h"
#include "installation/names.h"
#include "installation/program_files.h"
#include "platform/executable.h"
#include "platform/text.h"
#include "platform/text_cache.h"

#include <shlobj.h>
#include <windows.h>

#include <atomic>
#include <mutex>

namespace {

constexpr std::size_t longestHelpPath = 509; // 511 minus the terminator and an unused character

/// If the working directory is the user data cache folder, makes the documents folder the working directory.
/// Windows cannot remove a folder that is a process's working directory.
void fixWorkingDirectory()
{
    uinfo::PathBuffer cacheFolder;
    wchar_t current[MAX_PATH] = {};
    const DWORD currentLength = GetCurrentDirectoryW(MAX_PATH, current);
    if (!uinfo::executableFolderOrCut(cacheFolder, MAX_PATH) || !cacheFolder.append(uinfo::userDataCache) ||
        currentLength == 0 || currentLength >= MAX_PATH ||
        !uinfo::equalIgnoringCase(current, cacheFolder.text())) {
        return;
    }
    wchar_t documents[MAX_PATH] = {};
    if (SUCCEEDED(SHGetFolderPathW(nullptr, CSIDL_PERSONAL | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT,
                                   documents))) {
        SetCurrentDirectoryW(documents);
    }
}

} // namespace

namespace uinfo {

TarvoProduct::TarvoProduct()
{
    fixWorkingDirectory();
}

const wchar_t* TarvoProduct::helpFilePath()
{
    const wchar_t* const path = cachedText(m_helpFilePath, [](BoundedText& help) {
        return programFilePath(helpViewer, help) && help.length() <= longestHelpPath;
    });
    return isEmpty(path) ? helpViewer : path;
}

long TarvoProduct::productType()
{
    const std::int32_t type = uinfo::productType(productName());
    std::atomic_ref(m_productType).store(type, std::memory_order_relaxed);
    return type;
}

const wchar_t* TarvoProduct::userDataCachePath()
{
    return cachedText(m_userDataCachePath,
                      [](BoundedText& path) { return programFilePath(userDataCache, path); });
}

long TarvoProduct::readShared(const std::int32_t& value)
{
    const std::lock_guard<RkLocker> lock(m_lock);
    return value;
}

void TarvoProduct::writeShared(std::int32_t& value, long newValue)
{
    const std::lock_guard<RkLocker> lock(m_lock);
    value = static_cast<std::int32_t>(newValue);
}

} // namespace uinfo

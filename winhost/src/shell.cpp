// The user's folders, as defined by the XDG base directories and user directories.
#include "host_path.h"
#include "user_folders.h"

#include <shlobj.h>
#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace {

using winhost::homeFolder;
using winhost::xdgFolder;

constexpr INT folderMask = 0xFF;
constexpr HRESULT fileNotFound = static_cast<HRESULT>(0x80070002);

/// Returns the documents folder that is set in user-dirs.dirs, or "". The setting is a quoted path that
/// begins with $HOME or /.
std::string documentsOfUserDirs()
{
    constexpr std::string_view assignment = "XDG_DOCUMENTS_DIR=\"";
    constexpr std::string_view home = "$HOME";
    constexpr std::size_t mostBytes = 65536;
    std::istringstream file(
        winhost::readFile(winhost::configFolder() + "/user-dirs.dirs", mostBytes).value_or(""));
    for (std::string line; std::getline(file, line);) {
        const std::size_t end = line.rfind('"');
        if (!line.starts_with(assignment) || end < assignment.size()) {
            continue;
        }
        const std::string value = line.substr(assignment.size(), end - assignment.size());
        if (value.starts_with(home)) {
            return homeFolder() + value.substr(home.size());
        }
        return value.starts_with('/') ? value : std::string();
    }
    return {};
}

std::string documentsFolder()
{
    const char* const variable = "XDG_DOCUMENTS_DIR";
    const std::string assigned = std::getenv(variable) == nullptr ? documentsOfUserDirs() : std::string();
    return assigned.empty() ? xdgFolder(variable, "/Documents") : assigned;
}

std::string folderOnHost(INT id)
{
    switch (id) {
    case CSIDL_APPDATA:
        return winhost::configFolder();
    case CSIDL_LOCAL_APPDATA:
        return winhost::dataFolder();
    case CSIDL_PERSONAL:
        return documentsFolder();
    default:
        return {};
    }
}

HRESULT fail(HRESULT result, LPWSTR path)
{
    if (path != nullptr) {
        *path = 0;
    }
    return result;
}

} // namespace

HRESULT SHGetFolderPathW(HWND /*owner*/, INT folder, HANDLE /*token*/, DWORD flags, LPWSTR path)
{
    constexpr DWORD lastType = 1;
    std::string onHost = folderOnHost(folder & folderMask);
    if (flags > lastType || onHost.empty()) {
        return fail(E_INVALIDARG, path);
    }
    while (onHost.size() > 1 && onHost.back() == '/') {
        onHost.pop_back();
    }
    const winhost::Text full = winhost::windowsPath(onHost);
    if (full.size() >= MAX_PATH) {
        return fail(E_FAIL, path);
    }
    if (path != nullptr) {
        winhost::copyText(full, path, MAX_PATH);
    }
    std::error_code failure;
    if ((folder & CSIDL_FLAG_DONT_VERIFY) != 0 || std::filesystem::exists(onHost, failure)) {
        return S_OK;
    }
    if ((folder & CSIDL_FLAG_CREATE) == 0) {
        return fileNotFound;
    }
    return winhost::makeFolders(onHost) ? S_OK : E_FAIL;
}

BOOL SHGetSpecialFolderPathW(HWND owner, LPWSTR path, INT folder, BOOL create)
{
    const INT wanted = folder | (create != FALSE ? CSIDL_FLAG_CREATE : 0);
    return SUCCEEDED(SHGetFolderPathW(owner, wanted, nullptr, SHGFP_TYPE_CURRENT, path)) ? TRUE : FALSE;
}

// File searches, the access check and the working directory.
#include "host_path.h"
#include "last_error.h"

#include <io.h>
#include <windows.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using winhost::FullPath;
using winhost::Text;
using winhost::TextView;

/// The object that a search handle refers to. It has no members, because a search returns only one match.
/// It is on the heap, so that a sanitizer can report a handle that is leaked or closed twice.
struct Search
{
};

/// Returns the alphabetically first entry name that ends with the suffix. Returns "" if no entry matches.
std::string firstMatch(const std::string& folder, TextView suffix, std::error_code& failure)
{
    std::string first;
    Text firstName;
    for (std::filesystem::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        std::string bytes = entry->path().filename().native();
        Text name = winhost::fromUtf8(bytes);
        const std::size_t start = name.size() - std::min(name.size(), suffix.size());
        if (winhost::equalIgnoringCase(TextView(name).substr(start), suffix) &&
            (first.empty() || winhost::compare(name, firstName, true) < 0)) {
            first = std::move(bytes);
            firstName = std::move(name);
        }
    }
    return first;
}

bool isReadOnly(const struct stat& status)
{
    constexpr mode_t anyWriter = S_IWUSR | S_IWGRP | S_IWOTH;
    return !S_ISDIR(status.st_mode) && (status.st_mode & anyWriter) == 0;
}

HANDLE noMatch(DWORD error)
{
    SetLastError(error);
    return INVALID_HANDLE_VALUE;
}

} // namespace

HANDLE FindFirstFileW(LPCWSTR pattern, WIN32_FIND_DATAW* found)
{
    std::optional<FullPath> path = winhost::parsePath(winhost::viewOf(pattern));
    if (!path) {
        return INVALID_HANDLE_VALUE;
    }
    if (path->mustBeFolder || path->components.empty()) {
        return noMatch(ERROR_FILE_NOT_FOUND);
    }
    const Text name = std::move(path->components.back());
    path->components.pop_back();
    if (!name.starts_with(L"*.") || name.find_first_of(L"*?", 1) != TextView::npos) {
        return noMatch(ERROR_INVALID_NAME);
    }
    const std::optional<std::string> folder = winhost::findOnHost(*path);
    if (!folder) {
        return noMatch(ERROR_PATH_NOT_FOUND);
    }
    std::error_code failure;
    const std::string first = firstMatch(*folder, TextView(name).substr(1), failure);
    if (first.empty()) {
        return noMatch(winhost::isFolder(*folder) ? winhost::errorOf(failure.value(), ERROR_FILE_NOT_FOUND)
                                                  : ERROR_INVALID_NAME);
    }
    if (found != nullptr) {
        winhost::copyText(winhost::fromUtf8(first), found->cFileName, MAX_PATH);
    }
    return std::make_unique<Search>().release();
}

BOOL FindClose(HANDLE search)
{
    if (search == nullptr || search == INVALID_HANDLE_VALUE) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    const std::unique_ptr<Search> closed(static_cast<Search*>(search));
    return TRUE;
}

int _waccess(const wchar_t* path, int mode)
{
    constexpr unsigned writeAccess = 2;
    const std::optional<std::string> file = winhost::findOnHost(winhost::viewOf(path));
    struct stat status = {};
    if (!file || stat(file->c_str(), &status) != 0) {
        errno = ENOENT;
        return -1;
    }
    if ((static_cast<unsigned>(mode) & writeAccess) != 0 && isReadOnly(status)) {
        errno = EACCES;
        return -1;
    }
    return 0;
}

DWORD GetCurrentDirectoryW(DWORD size, LPWSTR buffer)
{
    std::error_code failure;
    const std::filesystem::path folder = std::filesystem::current_path(failure);
    if (failure) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return 0;
    }
    const Text path = winhost::windowsPath(folder.native());
    if (buffer == nullptr || path.size() >= size) {
        return static_cast<DWORD>(path.size() + 1);
    }
    return static_cast<DWORD>(winhost::copyText(path, buffer, size));
}

BOOL SetCurrentDirectoryW(LPCWSTR path)
{
    if (path == nullptr || *path == 0) {
        SetLastError(ERROR_INVALID_NAME);
        return FALSE;
    }
    const std::optional<std::string> folder = winhost::findOnHost(path);
    if (!folder) {
        return FALSE;
    }
    if (chdir(folder->c_str()) != 0) {
        SetLastError(winhost::errorOf(errno, ERROR_ACCESS_DENIED));
        return FALSE;
    }
    return TRUE;
}

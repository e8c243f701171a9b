#include "host_path.h"

#include "last_error.h"

#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace winhost {

namespace {

constexpr TextView separators = L"\\/";

bool isSeparator(wchar_t unit)
{
    return separators.find(unit) != TextView::npos;
}

bool startsWithSeparators(TextView path, std::size_t count)
{
    return path.size() >= count && std::ranges::all_of(path.substr(0, count), isSeparator);
}

/// Resolves "." and ".." without following links. Like Windows, removes one dot from the end of each
/// component that precedes a separator.
void appendComponents(std::vector<Text>& components, TextView path)
{
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of(separators), path.size());
        TextView component = path.substr(0, end);
        const bool isLast = end == path.size();
        path.remove_prefix(isLast ? end : end + 1);
        if (component == L"..") {
            if (!components.empty()) {
                components.pop_back();
            }
            continue;
        }
        if (component.ends_with(L'.') && (!isLast || component == L".")) {
            component.remove_suffix(1);
        }
        if (!component.empty()) {
            components.emplace_back(component);
        }
    }
}

bool exists(const std::string& file)
{
    struct stat status = {};
    return stat(file.c_str(), &status) == 0;
}

/// Finds a name in a folder: the exact name or, if there is none, the first name that differs only in case.
/// Returns the name as it is spelled in the folder, or "" if no name matches or the folder cannot be read.
std::string findEntry(const std::string& folder, const Text& name, std::error_code& failure)
{
    std::string exact = toUtf8(name);
    if (exists(folder + "/" + exact)) {
        return exact;
    }
    for (std::filesystem::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        std::string entryName = entry->path().filename().native();
        if (equalIgnoringCase(fromUtf8(entryName), name)) {
            return entryName;
        }
    }
    return {};
}

std::nullopt_t fail(DWORD error)
{
    SetLastError(error);
    return std::nullopt;
}

} // namespace

std::optional<FullPath> parsePath(TextView path)
{
    constexpr TextView verbatim = L"\\\\?\\";
    if (path.starts_with(verbatim)) {
        path.remove_prefix(verbatim.size());
    }
    if (path.empty() || startsWithSeparators(path, 2)) {
        return fail(ERROR_PATH_NOT_FOUND);
    }
    FullPath full;
    full.mustBeFolder = isSeparator(path.back()) || path.back() == L':'; // a drive is its current folder
    if (path.size() >= 2 && path[1] == L':') {
        if (upcase(path[0]) != L'Z') {
            return fail(ERROR_PATH_NOT_FOUND);
        }
        path.remove_prefix(2);
    }
    if (!startsWithSeparators(path, 1)) {
        std::error_code failure;
        appendComponents(full.components, fromUtf8(std::filesystem::current_path(failure).native()));
    }
    appendComponents(full.components, path);
    if (!full.mustBeFolder && !full.components.empty()) {
        Text& last = full.components.back();
        last.resize(last.find_last_not_of(L" .") + 1); // like Windows
        if (last.empty()) {
            full.components.pop_back();
            full.mustBeFolder = true;
        }
    }
    return full;
}

std::optional<std::string> findOnHost(const FullPath& path)
{
    std::string exact;
    for (const Text& component : path.components) {
        exact += '/';
        exact += toUtf8(component);
    }
    if (path.components.empty() || path.mustBeFolder) {
        exact += "/";
    }
    if (exists(exact)) {
        return exact;
    }
    std::string found;
    for (const Text& component : path.components) {
        std::error_code failure;
        const std::string entry = findEntry(found, component, failure);
        if (entry.empty()) {
            const bool isLast = &component == &path.components.back();
            const bool isMissing = isLast && isFolder(found + "/");
            const DWORD otherwise = isMissing ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
            return fail(failure == std::errc::too_many_files_open ? ERROR_TOO_MANY_OPEN_FILES : otherwise);
        }
        found += '/';
        found += entry;
    }
    if (path.mustBeFolder && !exists(found + "/")) {
        return fail(ERROR_INVALID_NAME);
    }
    return found;
}

std::optional<std::string> findOnHost(TextView path)
{
    const std::optional<FullPath> full = parsePath(path);
    return full ? findOnHost(*full) : std::nullopt;
}

Text windowsPath(std::string_view hostPath)
{
    Text path = L"Z:";
    path += fromUtf8(hostPath);
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

TextView fileName(TextView path)
{
    const std::size_t separator = path.find_last_of(separators);
    return separator == TextView::npos ? path : path.substr(separator + 1);
}

bool isFolder(const std::string& hostFile)
{
    struct stat status = {};
    return stat(hostFile.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<std::string> readStart(const std::string& hostFile, std::size_t size)
{
    const int file =
        ::open(hostFile.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // open() does not block on a FIFO
    const DWORD reason = errorOf(file < 0 ? errno : 0, ERROR_ACCESS_DENIED);
    std::string start;
    ssize_t length = -1;
    struct stat status = {};
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        start.resize(std::min(size, static_cast<std::size_t>(status.st_size)));
        length = ::read(file, start.data(), start.size());
    }
    ::close(file);
    if (length < 0) {
        return fail(reason);
    }
    start.resize(static_cast<std::size_t>(length));
    return start;
}

std::optional<std::string> readFile(const std::string& hostFile, std::size_t most)
{
    std::optional<std::string> bytes = readStart(hostFile, most + 1);
    return bytes && bytes->size() > most ? fail(ERROR_FILE_TOO_LARGE) : std::move(bytes);
}

} // namespace winhost

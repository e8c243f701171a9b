#include "model/system.h"

#include <winhost/changes.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

Console::Console() = default;
Console::~Console() = default;

std::optional<std::size_t> terminalColumns()
{
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) {
        return std::nullopt;
    }
    constexpr std::size_t usual = 80; // for a terminal that does not tell
    return size.ws_col > 0 ? size.ws_col : usual;
}

bool errorsGoToTerminal()
{
    return isatty(STDERR_FILENO) != 0;
}

Text fullFolder(const std::string& name)
{
    std::error_code failure;
    const std::filesystem::path folder =
        std::filesystem::canonical(name.starts_with("Z:") ? nativePath(utf16(name)) : name, failure);
    if (failure || !std::filesystem::is_directory(folder, failure)) {
        return {};
    }
    std::string path = "Z:" + folder.string() + '/';
    std::ranges::replace(path, '/', '\\');
    return utf16(path);
}

std::string nativePath(const Text& path)
{
    std::string name = utf8(path).substr(2); // without its drive
    std::ranges::replace(name, '\\', '/');
    return name;
}

bool isBarred(const Text& path)
{
    return access(nativePath(path).c_str(), R_OK) != 0 && errno == EACCES;
}

bool makeFile(const std::filesystem::path& path)
{
    constexpr mode_t byMask = 0666;
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, byMask);
    return file >= 0 && close(file) == 0;
}

std::string registryPlace()
{
    const char* const data = std::getenv("XDG_DATA_HOME");
    const char* const home = std::getenv("HOME");
    const std::string folder =
        data != nullptr && *data == '/' ? data : std::string(home != nullptr ? home : "") + "/.local/share";
    return ", in " + folder + "/winhost";
}

bool RegistryTransaction::begin()
{
    return winhostBeginRegistryChanges() == ERROR_SUCCESS;
}

bool RegistryTransaction::end(bool keep)
{
    return winhostEndRegistryChanges(keep ? TRUE : FALSE) == ERROR_SUCCESS;
}

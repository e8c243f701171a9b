#include "model/system.h"

#include "model/registry.h"

#include <winhost/changes.h>

#include <pwd.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

void prepareProcess() {}

std::optional<std::size_t> terminalColumns()
{
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) {
        return std::nullopt;
    }
    constexpr std::size_t usual = 80; // some terminals report a width of 0
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
    std::string name = utf8(path).substr(2); // removes the drive, such as Z:
    std::ranges::replace(name, '\\', '/');
    return name;
}

std::string shellWord(const std::string& word)
{
    constexpr const char* plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=.,:/@%";
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
        return word;
    }
    std::string out = "'";
    for (const char each : word) {
        out += each == '\'' ? "'\\''" : std::string(1, each);
    }
    return out + '\'';
}

std::string userFolder(bool isRoaming)
{
    const char* const folder = std::getenv(isRoaming ? "XDG_CONFIG_HOME" : "XDG_DATA_HOME");
    const char* const home = std::getenv("HOME");
    const passwd* const user = getpwuid(getuid());
    const std::string start = home != nullptr && *home == '/' ? home : user != nullptr ? user->pw_dir : "/";
    return folder != nullptr && *folder == '/' ? folder : start + (isRoaming ? "/.config" : "/.local/share");
}

std::string registryPlace()
{
    return ", in " + userFolder(false) + "/winhost";
}

void requireWritable(const Text& /*key*/)
{
    const std::string registry = userFolder(false) + "/winhost";
    std::string folder = registry;
    while (folder.size() > 1 && access(folder.c_str(), F_OK) != 0) {
        // Moves up to the nearest existing folder.
        folder.erase(std::max<std::size_t>(folder.rfind('/'), 1));
    }
    const std::string store = registry + "/registry.db";
    for (const std::string& file : {store, store + "-wal", store + "-shm", folder}) {
        struct stat found = {};
        if (stat(file.c_str(), &found) != 0) {
            continue;
        }
        if (access(file.c_str(), W_OK) != 0 && errno == EROFS) {
            throw Failure(file + " cannot be written: its file system is read-only",
                          "mount the file system for writing");
        }
        const bool isRegistry = folder == registry;
        if (found.st_uid != geteuid()) { // winhost never writes another user's files, not even as root
            throw Failure(file + " belongs to the user with ID " + std::to_string(found.st_uid),
                          std::string("run rkuinfo as that user, or ") +
                              (isRegistry ? "change the owner: sudo chown -R "
                                          : "create a folder for this user: sudo install -d -o ") +
                              std::to_string(geteuid()) + ' ' + shellWord(registry));
        }
        if (access(file.c_str(), W_OK) != 0) {
            throw Failure(file + " cannot be written", std::string("allow writing: chmod ") +
                                                           (isRegistry ? "-R " : "") + "u+rwX " +
                                                           shellWord(folder));
        }
    }
}

void inTransaction(const std::function<void()>& change)
{
    constexpr const char* refused = "the registry was not changed";
    require(winhostBeginRegistryChanges(), refused);
    try {
        change();
    } catch (...) {
        winhostEndRegistryChanges(FALSE);
        throw;
    }
    require(winhostEndRegistryChanges(TRUE), refused);
}

bool hasTransactions()
{
    return true;
}

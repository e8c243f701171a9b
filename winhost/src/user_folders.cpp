#include "user_folders.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace winhost {

std::string homeFolder()
{
    const char* const home = std::getenv("HOME");
    if (home != nullptr && *home == '/') {
        return home;
    }
    constexpr std::size_t room = 16384;
    std::vector<char> text(room);
    struct passwd entry = {};
    struct passwd* user = nullptr;
    getpwuid_r(getuid(), &entry, text.data(), text.size(), &user);
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

std::string xdgFolder(const char* variable, const char* belowHome)
{
    const char* const value = std::getenv(variable);
    return value != nullptr && *value == '/' ? std::string(value) : homeFolder() + belowHome;
}

std::string configFolder()
{
    return xdgFolder("XDG_CONFIG_HOME", "/.config");
}

std::string dataFolder()
{
    return xdgFolder("XDG_DATA_HOME", "/.local/share");
}

bool makeFolders(const std::string& folder)
{
    constexpr mode_t mode = 0700; // set with chmod, because the umask may remove permissions
    struct stat found = {};
    errno = stat(folder.c_str(), &found) != 0 ? errno : S_ISDIR(found.st_mode) ? 0 : ENOTDIR;
    if (errno != ENOENT) {
        return errno == 0;
    }
    const std::string above = folder.substr(0, std::max(folder.find_last_of('/'), std::size_t{1}));
    if (!makeFolders(above) || stat(above.c_str(), &found) != 0) {
        return false;
    }
    errno = EACCES;
    return found.st_uid == geteuid() &&
           (mkdir(folder.c_str(), mode) == 0 ? chmod(folder.c_str(), mode) == 0 : errno == EEXIST);
}

} // namespace winhost

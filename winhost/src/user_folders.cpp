#include "user_folders.h"

#include <cstdlib>
#include <pwd.h>
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

} // namespace winhost

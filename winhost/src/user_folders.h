// Where the user's files are, as the XDG base directories say.
#pragma once

#include <string>

namespace winhost {

/// $HOME, else the folder that the system has for the user.
std::string homeFolder();

/// An absolute path in the environment, else a folder of the user's home.
std::string xdgFolder(const char* variable, const char* belowHome);

std::string configFolder();
std::string dataFolder();

} // namespace winhost

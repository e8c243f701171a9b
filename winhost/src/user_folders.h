// The folders of the user's files, by the XDG base directories.
#pragma once

#include <string>

namespace winhost {

/// $HOME, else the folder that the system has for the user.
std::string homeFolder();

/// An absolute path in the environment, else a folder of the user's home.
std::string xdgFolder(const char* variable, const char* belowHome);

std::string configFolder();
std::string dataFolder();

/// Creates a folder and its missing parents. Returns false, with the cause in errno, if one cannot be
/// created, or would be created in a folder of another user, whom it would lock out.
bool makeFolders(const std::string& folder);

} // namespace winhost

// The folders for the user's files: the XDG base directories.
#pragma once

#include <string>

namespace winhost {

/// Returns $HOME if it is set, otherwise the home folder that the system records for the user.
std::string homeFolder();

/// Returns the absolute path that an environment variable contains or, if it contains none, a folder in the
/// user's home.
std::string xdgFolder(const char* variable, const char* belowHome);

std::string configFolder();
std::string dataFolder();

/// Creates a folder and its missing parents. On failure, returns false and sets errno. Fails if the new
/// folder would be in another user's folder.
bool makeFolders(const std::string& folder);

} // namespace winhost

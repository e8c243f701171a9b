// Where Windows paths are on the host: Z:\ is the root. Everything that takes a path goes through here.
#pragma once

#include "text.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace winhost {

/// A path made absolute, with "." and ".." worked out by name.
struct FullPath
{
    std::vector<Text> components; // below Z:\.
    bool mustBeFolder = false;    // it ended in a separator
};

/// Nothing, with the last error set, for an empty path and for any drive or share but Z:.
std::optional<FullPath> parsePath(TextView path);

/// The existing host file that a path names; each component is taken exactly, else ignoring case. Nothing,
/// with the last error set, when there is none.
std::optional<std::string> findOnHost(const FullPath& path);
std::optional<std::string> findOnHost(TextView path);

/// The Windows form of an absolute host path.
Text windowsPath(std::string_view hostPath);

/// Everything after the last separator of either kind.
TextView fileName(TextView path);

bool isFolder(const std::string& hostFile);

/// Reads the first bytes of a regular file, or returns nothing and sets the last error.
std::optional<std::string> readStart(const std::string& hostFile, std::size_t size);
/// The same of a whole file: ERROR_FILE_TOO_LARGE if it is longer than that.
std::optional<std::string> readFile(const std::string& hostFile, std::size_t most);

} // namespace winhost

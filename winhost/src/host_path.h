// Converts between Windows paths and host paths: Z:\ is the host's root folder. Every Win32 function that
// accepts a path uses these functions.
#pragma once

#include "text.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace winhost {

/// An absolute path, with "." and ".." resolved without following links.
struct FullPath
{
    std::vector<Text> components; // below Z:\.
    bool mustBeFolder = false;    // the path ended in a separator
};

/// Returns nothing and sets the last error if the path is empty, or if it is on a share or on a drive other
/// than Z:.
std::optional<FullPath> parsePath(TextView path);

/// Finds the host file to which a path refers. Each component must match the name of a file or folder; an
/// exact match takes precedence over one that differs in case. Returns nothing and sets the last error if no
/// file matches.
std::optional<std::string> findOnHost(const FullPath& path);
std::optional<std::string> findOnHost(TextView path);

/// Returns the Windows form of an absolute host path.
Text windowsPath(std::string_view hostPath);

/// Returns the part after the last separator of either kind.
TextView fileName(TextView path);

bool isFolder(const std::string& hostFile);

/// Reads the first bytes of a regular file, or returns nothing and sets the last error.
std::optional<std::string> readStart(const std::string& hostFile, std::size_t size);
/// Reads a whole file. `most` is the maximum size in bytes: if the file is larger, returns nothing and sets
/// the last error to ERROR_FILE_TOO_LARGE.
std::optional<std::string> readFile(const std::string& hostFile, std::size_t most);

} // namespace winhost

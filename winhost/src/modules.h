// The module data that the resource functions read.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

namespace winhost {

/// Returns the bytes of a module that was loaded for its resources; null for every other handle.
std::shared_ptr<const std::string> resourceFile(HMODULE module);

/// Returns the executable's path on the host.
std::string executableFile();

} // namespace winhost

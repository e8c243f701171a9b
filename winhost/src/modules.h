// What the resource functions need of a module.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

namespace winhost {

/// The bytes of a module that was loaded for its resources; null for every other handle.
std::shared_ptr<const std::string> resourceFile(HMODULE module);

/// The executable's path on the host.
std::string executableFile();

} // namespace winhost

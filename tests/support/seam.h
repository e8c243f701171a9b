// What tests often want of the seam.
#pragma once

#include "support/imports.h"
#include "support/text.h"

#include <windows.h>

#include <algorithm>
#include <string>

namespace testing_support {

/// Counts the registry keys that the library opens and closes while it lives.
class KeyCounter
{
public:
    int opened() const { return m_opened; }
    int stillOpen() const { return m_opened - m_closed; }

private:
    template <int Function> // each intercepted function needs a handler type of its own
    struct Counting
    {
        int* counter;

        LSTATUS operator()(auto real, auto... arguments) const
        {
            const LSTATUS status = real(arguments...);
            *counter += status == ERROR_SUCCESS ? 1 : 0;
            return status;
        }
    };

    int m_opened = 0;
    int m_closed = 0;
    Intercept<decltype(RegOpenKeyExW), Counting<0>> m_open{libraryModule, "RegOpenKeyExW", {&m_opened}};
    Intercept<decltype(RegCreateKeyExW), Counting<1>> m_create{libraryModule, "RegCreateKeyExW", {&m_opened}};
    Intercept<decltype(RegCloseKey), Counting<2>> m_close{libraryModule, "RegCloseKey", {&m_closed}};
};

/// Lets the library believe that the process's executable has another path, of any length; empty: none can be
/// read.
class PretendedExecutable
{
public:
    explicit PretendedExecutable(const std::string& path)
        : m_moduleFileName{libraryModule, "GetModuleFileNameW", {path}}
    {
    }

private:
    struct Answer
    {
        Wide path;

        DWORD operator()(auto real, HMODULE module, LPWSTR out, DWORD size) const
        {
            if (module != GetModuleHandleW(nullptr) && module != nullptr) {
                return real(module, out, size);
            }
            if (path.length() == 0) {
                SetLastError(ERROR_ACCESS_DENIED);
                return 0;
            }
            const auto length = static_cast<DWORD>(path.length());
            const DWORD copied = std::min(length, size - 1);
            std::copy_n(static_cast<const wchar_t*>(path), copied, out);
            out[copied] = 0;
            if (copied < length) {
                SetLastError(ERROR_INSUFFICIENT_BUFFER);
                return size;
            }
            return length;
        }
    };

    Intercept<decltype(GetModuleFileNameW), Answer> m_moduleFileName;
};

} // namespace testing_support

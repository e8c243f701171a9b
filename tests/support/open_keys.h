// Counts the registry keys that the library has open.
#pragma once

#include "support/imports.h"

#include <windows.h>

#include <atomic>

namespace testing_support {

/// Counts the keys that are opened and closed during its lifetime.
class OpenKeys
{
public:
    int stillOpen() const { return m_open; }

private:
    template <Name name, typename Function>
    Patch counting(int change)
    {
        return intercept<name, Function>([this, change](auto real, auto... arguments) {
            const LSTATUS status = real(arguments...);
            m_open += status == ERROR_SUCCESS ? change : 0;
            return status;
        });
    }

    std::atomic<int> m_open = 0;
    Patch m_patches[3] = {counting<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(1),
                          counting<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(1),
                          counting<"RegCloseKey", decltype(RegCloseKey)>(-1)};
};

} // namespace testing_support

// What tests often want of the seam.
#pragma once

#include "support/imports.h"
#include "support/names.h"
#include "support/scratch.h"
#include "support/text.h"

#include <windows.h>

#include <algorithm>
#include <sstream>
#include <string>

namespace testing_support {

/// The whole name of a function that the library exports, from the list that the exports are held to.
inline std::string exportedName(std::string_view function)
{
    std::istringstream names(readFile(RKUINFO_EXPORTS));
    for (std::string name; std::getline(names, name);) {
        if (isNameOf(name, function)) {
            return name;
        }
    }
    return "";
}

/// A handler that counts a registry function's successes.
inline auto counting(int& counter)
{
    return [&counter](auto real, auto... arguments) {
        const LSTATUS status = real(arguments...);
        counter += status == ERROR_SUCCESS ? 1 : 0;
        return status;
    };
}

/// Counts the registry keys that the library opens and closes while it lives.
class KeyCounter
{
public:
    KeyCounter() = default;
    KeyCounter(const KeyCounter&) = delete;
    KeyCounter& operator=(const KeyCounter&) = delete;
    ~KeyCounter() = default;

    int opened() const { return m_opened; }
    int stillOpen() const { return m_opened - m_closed; }

private:
    int m_opened = 0;
    int m_closed = 0;
    Patch m_open = intercept<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(counting(m_opened));
    Patch m_create = intercept<"RegCreateKeyExW", decltype(RegCreateKeyExW)>(counting(m_opened));
    Patch m_close = intercept<"RegCloseKey", decltype(RegCloseKey)>(counting(m_closed));
};

/// Lets the library believe that the process's executable has another path, of any length; empty: none can be
/// read.
[[nodiscard]] inline Patch pretendExecutable(const std::string& pretended)
{
    const auto answer = [path = Wide(pretended)](auto real, HMODULE module, LPWSTR out, DWORD size) -> DWORD {
        if (module != GetModuleHandleW(nullptr) && module != nullptr) {
            return real(module, out, size);
        }
        const auto length = static_cast<DWORD>(path.length());
        if (length == 0) {
            SetLastError(ERROR_ACCESS_DENIED);
            return 0;
        }
        const DWORD copied = std::min(length, size - 1);
        std::copy_n(+path, copied, out);
        out[copied] = 0;
        if (copied < length) {
            SetLastError(ERROR_INSUFFICIENT_BUFFER);
            return size;
        }
        return length;
    };
    return intercept<"GetModuleFileNameW", decltype(GetModuleFileNameW)>(answer);
}

} // namespace testing_support

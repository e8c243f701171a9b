// Owned handles of modules and file searches.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace uinfo {

struct FreeModule
{
    void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Module = std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeModule>;

/// A file search; false when nothing matched.
class FindHandle
{
public:
    explicit FindHandle(const wchar_t* pattern) : m_search(FindFirstFileW(pattern, &m_found)) {}
    FindHandle(const FindHandle&) = delete;
    FindHandle& operator=(const FindHandle&) = delete;
    ~FindHandle()
    {
        if (*this) {
            FindClose(m_search);
        }
    }

    explicit operator bool() const { return m_search != INVALID_HANDLE_VALUE; }

private:
    WIN32_FIND_DATAW m_found;
    HANDLE m_search;
};

} // namespace uinfo

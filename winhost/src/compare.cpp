// CompareStringOrdinal.
#include "text.h"

#include <windows.h>

INT CompareStringOrdinal(LPCWSTR a, INT aLength, LPCWSTR b, INT bLength, BOOL ignoreCase)
{
    const auto view = [](LPCWSTR text, INT length) {
        return length < 0 ? winhost::TextView(text)
                          : winhost::TextView(text, static_cast<std::size_t>(length));
    };
    if (a == nullptr || b == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const int order = winhost::compare(view(a, aLength), view(b, bLength), ignoreCase != FALSE);
    return order < 0 ? CSTR_LESS_THAN : order > 0 ? CSTR_GREATER_THAN : CSTR_EQUAL;
}
